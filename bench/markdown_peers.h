// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <map>
#include <memory>
#include <string>
#include <string_view>

/// What others would use to read a message.
namespace varnel::bench {

/// With callbacks that do nothing. `github` is its dialect with tables and strikethrough.
void parseWithMd4c(std::string_view text, bool github);

/// cmark or cmark-gfm. They export the same names, so each is opened apart from the program.
class Cmark {
 public:
  /// Throws when there is no such library.
  explicit Cmark(const char* library);

  /// The structure of blocks alone.
  void parseBlocks(std::string_view text) const;
  void parse(std::string_view text) const;

 private:
  struct Library;
  std::shared_ptr<const Library> m_library;
};

void parseWithQt(std::string_view text);

/// Bytes per second by the names of the cases of markdown_node.mjs; why not where Node or its packages are out of
/// reach. The packages are put beside this program.
std::expected<std::map<std::string, double>, std::string> ratesInNode(const std::string& file, int rounds);

}  // namespace varnel::bench
