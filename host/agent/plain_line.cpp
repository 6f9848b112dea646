// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/plain_line.h"

#include <algorithm>
#include <cctype>

namespace varnel::agent {

namespace {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

std::string_view withoutBlockMarks(std::string_view line) {
  while (true) {
    line = trimmed(line);
    const std::size_t digits = line.find_first_not_of("0123456789");
    if (line.starts_with("> ") || line.starts_with("- ") || line.starts_with("* ")) {
      line.remove_prefix(2);
    } else if (line.starts_with("[ ] ") || line.starts_with("[x] ")) {
      line.remove_prefix(4);
    } else if (line.starts_with('#')) {
      line.remove_prefix(std::min(line.find_first_not_of('#'), line.size()));
    } else if (digits != 0 && digits != std::string_view::npos && line.substr(digits).starts_with(". ")) {
      line.remove_prefix(digits + 2);
    } else {
      return line;
    }
  }
}

std::string withoutInlineMarks(std::string_view line) {
  std::string plain;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '`' || line[i] == '*' || line.substr(i, 2) == "~~") {
      i += line[i] == '~' ? 1 : 0;
    } else if (line[i] == '[' && line.find("](", i) != std::string_view::npos) {
      const std::size_t middle = line.find("](", i);
      plain += line.substr(i + 1, middle - i - 1);
      i = std::min(line.find(')', middle), line.size() - 1);
    } else {
      plain += line[i];
    }
  }
  return plain;
}

}  // namespace

std::string excerpt(std::string_view text, std::size_t codePoints) {
  std::string line;
  std::size_t count = 0;
  for (const char c : text) {
    const bool begins = (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    if (begins && count++ == codePoints) return line + "…";
    const bool blank = c == '\n' || c == '\r' || c == '\t';
    line += blank ? ' ' : c;
  }
  return line;
}

std::string plainLine(std::string_view markdown) {
  bool inCode = false;
  while (!markdown.empty()) {
    const std::size_t end = markdown.find('\n');
    const std::string_view line = trimmed(markdown.substr(0, end));
    markdown.remove_prefix(end == std::string_view::npos ? markdown.size() : end + 1);
    if (line.starts_with("```")) inCode = !inCode;
    if (inCode || line.starts_with("```") || line.starts_with('|') || line.starts_with("---")) continue;
    const std::string plain = withoutInlineMarks(withoutBlockMarks(line));
    if (!plain.empty()) return excerpt(plain, 160);
  }
  return {};
}

}  // namespace varnel::agent
