// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace varnel::testing {

/// A folder of this test's own, gone with it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "varnel-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = name;
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

 private:
  std::filesystem::path m_path;
};

}  // namespace varnel::testing
