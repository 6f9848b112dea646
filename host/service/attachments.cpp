// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/attachments.h"

#include <fcntl.h>
#include <unistd.h>
#include <utf8proc.h>

#include <algorithm>
#include <unordered_set>

#include "host/service/log.h"
#include "host/store/digest.h"
#include "host/store/fold.h"

namespace varnel::service {

namespace {

constexpr std::string_view kArrivingSuffix = ".part";
constexpr std::size_t kNameLength = 200;
constexpr std::size_t kIdBytes = 12;

std::string kindOf(std::string_view mimeType) {
  if (mimeType.starts_with("image/")) return "image";
  if (mimeType.starts_with("video/")) return "video";
  return "file";
}

/// A name without folders; the file itself is kept under its id.
std::string plainName(std::string_view name) {
  const auto slash = name.find_last_of("/\\");
  if (slash != std::string_view::npos) name.remove_prefix(slash + 1);
  name = store::firstCharacters(name, kNameLength);
  return name.empty() ? "file" : std::string(name);
}

bool isPlainText(std::string_view text) {
  while (!text.empty()) {
    utf8proc_int32_t code = -1;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &code);
    if (size <= 0 || utf8proc_category(code) == UTF8PROC_CATEGORY_CC) return false;
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

bool sync(const std::filesystem::path& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  const bool synced = ::fsync(file) == 0;
  ::close(file);
  return synced;
}

}  // namespace

std::filesystem::path Attachments::newFile() const {
  return m_folder / (store::randomText(kIdBytes) + std::string(kArrivingSuffix));
}

Outcome<void> Attachments::check(const Description& description) {
  if (!isPlainText(description.name)) return refuse(Failure::Kind::Invalid, "The file's name is not plain text.");
  if (!isPlainText(description.mimeType)) return refuse(Failure::Kind::Invalid, "The file's type is not plain text.");
  return {};
}

Outcome<void> Attachments::checkRoom(std::int64_t size) const {
  if (m_uploads.unsentBytes() + size <= kUnsentBytes) return {};
  return refuse(Failure::Kind::TooLarge, "Too many files wait on the host. Send some, or wait a day.");
}

Outcome<wire::UploadedAttachment> Attachments::add(const std::filesystem::path& file, const Description& description) {
  if (const auto room = checkRoom(description.size); !room) return std::unexpected(room.error());
  const store::Uploads::Stored upload{.record = {.id = file.stem().string(),
                                                 .kind = kindOf(description.mimeType),
                                                 .name = plainName(description.name),
                                                 .mimeType = description.mimeType,
                                                 .size = description.size},
                                      .sessionId = description.sessionId};
  std::error_code error;
  if (sync(file)) std::filesystem::rename(file, m_folder / upload.record.id, error);
  if (error || !sync(m_folder)) {
    log("a file that was sent could not be kept: " + error.message());
    return refuse(Failure::Kind::Internal, "The file could not be kept on the host.");
  }
  m_uploads.add(upload, m_clock.wall());
  return upload.record;
}

Outcome<std::vector<agent::TurnInput::Attachment>> Attachments::find(
    std::string_view sessionId, const std::vector<wire::UploadedAttachment>& named) const {
  std::vector<agent::TurnInput::Attachment> found;
  for (const auto& attachment : named) {
    auto upload = m_uploads.find(attachment.id);
    if (!upload || upload->sessionId != sessionId) {
      return refuse(Failure::Kind::Invalid, "An attached file is not on the host (any more). Attach it again.");
    }
    const auto path = m_folder / upload->record.id;
    found.push_back({.record = std::move(upload->record), .path = path.string()});
  }
  return found;
}

void Attachments::markSent(const std::vector<agent::TurnInput::Attachment>& attachments) {
  for (const auto& attachment : attachments) m_uploads.markSent(attachment.record.id);
}

void Attachments::markWaiting(const std::vector<wire::UploadedAttachment>& attachments) {
  for (const auto& attachment : attachments) m_uploads.markSent(attachment.id);
}

void Attachments::markUnsent(const std::vector<wire::UploadedAttachment>& attachments) {
  for (const auto& attachment : attachments) m_uploads.markUnsent(attachment.id, m_clock.wall());
}

void Attachments::sweep() {
  std::error_code error;
  for (const auto& id : m_uploads.takeUnsentBefore(m_clock.wall() - kUnsentSeconds)) {
    std::filesystem::remove(m_folder / id, error);
  }
  const auto ids = m_uploads.ids();
  const std::unordered_set<std::string> known(ids.begin(), ids.end());
  const auto oldest = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const auto& entry : std::filesystem::directory_iterator(m_folder, error)) {
    // Young ones may still be arriving.
    const bool isYoung = std::filesystem::last_write_time(entry, error) > oldest;
    if (!isYoung && !known.contains(entry.path().filename().string())) std::filesystem::remove(entry, error);
  }
}

}  // namespace varnel::service
