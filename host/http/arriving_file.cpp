// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/http/arriving_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace varnel::http {

ArrivingFile::ArrivingFile(std::filesystem::path path)
    : m_path(std::move(path)), m_file(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {}

ArrivingFile::~ArrivingFile() {
  if (m_file >= 0) ::close(m_file);
  std::error_code ignored;
  if (m_file >= 0 && !m_kept) std::filesystem::remove(m_path, ignored);
}

bool ArrivingFile::write(std::string_view piece) {
  m_digest.add(piece);
  m_size += static_cast<std::int64_t>(piece.size());
  while (!piece.empty()) {
    const auto written = ::write(m_file, piece.data(), piece.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    piece.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace varnel::http
