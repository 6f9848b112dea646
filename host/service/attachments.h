// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/wire/catalogue.h"
#include "host/agent/agent.h"
#include "host/service/clock.h"
#include "host/service/failure.h"
#include "host/store/uploads.h"

namespace varnel::service {

/// The files that phones send. Each lies under its id in the uploads folder, 0600; one that was not sent with a message
/// within a day is removed.
class Attachments {
 public:
  static constexpr std::int64_t kLargestBytes = 100LL * 1024 * 1024;
  static constexpr double kUnsentSeconds = 24 * 3600;
  /// All files that wait to be sent.
  static constexpr std::int64_t kUnsentBytes = 1024LL * 1024 * 1024;

  Attachments(store::Uploads& uploads, std::filesystem::path folder, Clock clock)
      : m_uploads(uploads), m_folder(std::move(folder)), m_clock(std::move(clock)) {}

  /// Where a file is written while it arrives; give it to `add` or remove it.
  [[nodiscard]] std::filesystem::path newFile() const;
  struct Description {
    std::string sessionId;
    std::string name;
    std::string mimeType;
    std::int64_t size = 0;
  };
  /// Refuses words that nobody could be shown: what is not UTF-8, and control characters.
  static Outcome<void> check(const Description& description);
  /// Refuses a file of that size while so many wait to be sent that the disk might fill.
  [[nodiscard]] Outcome<void> checkRoom(std::int64_t size) const;
  /// Takes a file that has arrived in full, syncs it and keeps it.
  Outcome<wire::UploadedAttachment> add(const std::filesystem::path& file, const Description& description);

  /// The stored files that a message names; the bridge's own records, whatever the message says about them.
  [[nodiscard]] Outcome<std::vector<agent::TurnInput::Attachment>> find(
      std::string_view sessionId, const std::vector<wire::UploadedAttachment>& named) const;
  void markSent(const std::vector<agent::TurnInput::Attachment>& attachments);
  /// Files of a message that waits are kept as if it were sent; those of one that was taken back, for another day.
  void markWaiting(const std::vector<wire::UploadedAttachment>& attachments);
  void markUnsent(const std::vector<wire::UploadedAttachment>& attachments);
  /// Removes what was never sent, and files that no row knows.
  void sweep();

 private:
  store::Uploads& m_uploads;
  std::filesystem::path m_folder;
  Clock m_clock;
};

}  // namespace varnel::service
