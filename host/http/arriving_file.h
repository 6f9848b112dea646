// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "host/store/digest.h"

namespace varnel::http {

/// A file that is written piece by piece, 0600, and removed again unless it is kept.
class ArrivingFile {
 public:
  explicit ArrivingFile(std::filesystem::path path);
  ~ArrivingFile();
  ArrivingFile(const ArrivingFile&) = delete;
  ArrivingFile& operator=(const ArrivingFile&) = delete;

  /// False when the disk does not take it.
  bool write(std::string_view piece);
  void keep() { m_kept = true; }
  [[nodiscard]] bool isOpen() const { return m_file >= 0; }
  [[nodiscard]] std::int64_t size() const { return m_size; }
  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
  /// Over all that was written; nothing may be written afterwards.
  store::Digest finish() { return m_digest.finish(); }

 private:
  std::filesystem::path m_path;
  int m_file;
  bool m_kept = false;
  std::int64_t m_size = 0;
  store::DigestBuilder m_digest;
};

}  // namespace varnel::http
