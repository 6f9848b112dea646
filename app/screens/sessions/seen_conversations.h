// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/platform/defaults_store.h"
#include "core/wire/session.h"

namespace varnel::screens {

/// Which conversations have moved on since they were last looked at, on this device. What the first list of a pairing
/// holds counts as seen; what appears later does not.
class SeenConversations {
 public:
  explicit SeenConversations(std::shared_ptr<platform::DefaultsStore> defaults);

  /// Takes note of a list from the bridge: drops what is gone from it, and takes the first one as seen.
  void listed(const std::vector<wire::SessionSummary>& sessions);
  void see(const wire::SessionSummary& session);
  [[nodiscard]] bool isUnread(const wire::SessionSummary& session) const;
  /// With the pairing.
  void forget();

 private:
  void save();

  std::shared_ptr<platform::DefaultsStore> m_defaults;
  platform::Dictionary m_seen;  ///< id to `updatedAt`, as text
  bool m_known = false;         ///< a list of this pairing has been seen
};

}  // namespace varnel::screens
