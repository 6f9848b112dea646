// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>
#include <string>
#include <vector>

#include "core/wire/catalogue.h"
#include "core/wire/queue.h"

namespace varnel::screens {

/// A file that goes with the next message.
struct AttachmentRow {
  std::string id;
  QString symbol;
  QString name;
  QString size;

  [[nodiscard]] const std::string& identity() const { return id; }
  bool operator==(const AttachmentRow&) const = default;
};
AttachmentRow attachmentRow(const wire::UploadedAttachment& attachment);

/// A message that waits for the end of the running turn.
struct QueuedRow {
  std::string id;
  QString text;
  QString note;  ///< why it will not go out, else what is attached; may be empty
  bool failed = false;

  [[nodiscard]] const std::string& identity() const { return id; }
  bool operator==(const QueuedRow&) const = default;
};
QueuedRow queuedRow(const wire::QueuedMessage& message);

}  // namespace varnel::screens
