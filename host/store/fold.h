// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace varnel::store {

/// A piece of a text, in bytes.
struct TextRange {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool operator==(const TextRange&) const = default;
};

/// The first place where the text holds the needle, upper and lower case being the same, in every script; never inside
/// a character. Nothing for an empty needle.
std::optional<TextRange> findFolded(std::string_view text, std::string_view needle);

/// Characters (code points) of a text.
std::size_t characterCount(std::string_view text);

/// At most that many characters (code points) from the beginning.
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// One line of text around a range: up to that many characters on each side, white space collapsed, "…" where cut.
std::string excerpt(std::string_view text, TextRange range, std::size_t around);

}  // namespace varnel::store
