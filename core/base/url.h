// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace varnel::base {

/// An absolute or relative URL kept as the text it was written in. Only `parse` makes one, so holding a `Url` means
/// that the text follows RFC 3986 (characters beyond ASCII are let through and percent-encoded where it is used).
class Url {
 public:
  Url() = default;
  /// Nothing when the text is empty, holds a character that no URL may hold (white space, controls, `"<>\^{|}` and
  /// the backtick) or a "%" that is not followed by two hexadecimal digits.
  static std::optional<Url> parse(std::string_view text);

  [[nodiscard]] const std::string& text() const { return m_text; }
  /// The parts as written, none of them decoded; views into this object. `authority` is absent without "//".
  struct Parts {
    std::string_view scheme;
    std::optional<std::string_view> authority;
    std::string_view path;
    std::optional<std::string_view> query;
    std::optional<std::string_view> fragment;
  };
  [[nodiscard]] Parts parts() const;

  auto operator<=>(const Url&) const = default;

 private:
  explicit Url(std::string text) : m_text(std::move(text)) {}
  std::string m_text;
};

}  // namespace varnel::base
