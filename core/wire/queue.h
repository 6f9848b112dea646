// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/wire/catalogue.h"

namespace varnel::wire {

/// A message that the bridge sends when the running turn has ended.
struct QueuedMessage {
  std::string id;
  double createdAt = 0;  ///< seconds since 1970, UTC
  std::string text;
  std::vector<UploadedAttachment> attachments;
  /// Why the agent did not take it: then it waits for nothing more, and stands here until it is removed.
  std::optional<std::string> failure;

  [[nodiscard]] const std::string& identity() const { return id; }
};
bool operator==(const QueuedMessage&, const QueuedMessage&);

struct QueueEnvelope {
  std::vector<QueuedMessage> queued;
};
bool operator==(const QueueEnvelope&, const QueueEnvelope&);

}  // namespace varnel::wire
