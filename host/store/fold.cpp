// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/fold.h"

#include <utf8proc.h>

#include <vector>

namespace varnel::store {

namespace {

struct Character {
  utf8proc_int32_t code = 0;
  std::size_t size = 1;
};

Character characterAt(std::string_view text, std::size_t position) {
  utf8proc_int32_t code = -1;
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data() + position);
  const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size() - position), &code);
  if (size <= 0) return {.code = -1, .size = 1};
  return {.code = code, .size = static_cast<std::size_t>(size)};
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::vector<utf8proc_int32_t> fold(std::string_view text) {
  std::vector<utf8proc_int32_t> folded;
  for (std::size_t position = 0; position < text.size();) {
    const Character character = characterAt(text, position);
    folded.push_back(utf8proc_tolower(character.code));
    position += character.size;
  }
  return folded;
}

std::optional<std::size_t> matchEnd(std::string_view text, std::size_t position,
                                    const std::vector<utf8proc_int32_t>& needle) {
  for (const auto code : needle) {
    if (position >= text.size()) return std::nullopt;
    const Character character = characterAt(text, position);
    if (utf8proc_tolower(character.code) != code) return std::nullopt;
    position += character.size;
  }
  return position;
}

bool isSpace(char byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

std::string collapsed(std::string_view text) {
  std::string line;
  for (const char byte : text) {
    const char shown = isSpace(byte) ? ' ' : byte;
    if (shown == ' ' && (line.empty() || line.back() == ' ')) continue;
    line += shown;
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

}  // namespace

std::optional<TextRange> findFolded(std::string_view text, std::string_view needle) {
  const auto folded = fold(needle);
  if (folded.empty()) return std::nullopt;
  for (std::size_t position = 0; position < text.size(); position += characterAt(text, position).size) {
    if (auto end = matchEnd(text, position, folded)) return TextRange{.begin = position, .end = *end};
  }
  return std::nullopt;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char byte : text) count += isContinuation(byte) ? 0 : 1;
  return count;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; end < text.size() && count > 0; --count) end += characterAt(text, end).size;
  return text.substr(0, end);
}

std::string excerpt(std::string_view text, TextRange range, std::size_t around) {
  std::size_t begin = range.begin;
  for (std::size_t taken = 0; begin > 0 && taken < around; ++taken) {
    do {
      --begin;
    } while (begin > 0 && isContinuation(text[begin]));
  }
  std::size_t end = range.end;
  for (std::size_t taken = 0; end < text.size() && taken < around; ++taken) end += characterAt(text, end).size;
  std::string line = collapsed(text.substr(begin, end - begin));
  if (begin > 0) line.insert(0, "…");
  if (end < text.size()) line += "…";
  return line;
}

}  // namespace varnel::store
