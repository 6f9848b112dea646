// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/markdown/inline_scan.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "core/base/text.h"
#include "core/markdown/entities.h"

namespace varnel::markdown {

namespace {

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isAlphanumeric(char c) {
  return isLetter(c) || isDigit(c);
}

bool isControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

bool isLineEnd(char c) {
  return c == '\n' || c == '\r';
}

/// Walks over a text. Taking from its end takes nothing.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : m_text(text) {}

  [[nodiscard]] std::size_t at() const { return m_at; }
  [[nodiscard]] bool atEnd() const { return m_at == m_text.size(); }
  /// NUL at the end.
  [[nodiscard]] char peek(std::size_t ahead = 0) const {
    return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : '\0';
  }
  [[nodiscard]] std::string_view since(std::size_t begin) const { return m_text.substr(begin, m_at - begin); }

  void skip() { ++m_at; }
  bool take(char c) {
    if (atEnd() || peek() != c) return false;
    skip();
    return true;
  }
  std::size_t takeWhile(auto accepts) {
    const std::size_t begin = m_at;
    while (!atEnd() && accepts(peek())) skip();
    return m_at - begin;
  }
  /// Spaces and tabs with at most one line end among them.
  std::size_t takeSpace() {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    const std::size_t begin = m_at;
    takeWhile(isBlank);
    const bool ended = take('\r');
    if (take('\n') || ended) takeWhile(isBlank);
    return m_at - begin;
  }

 private:
  std::string_view m_text;
  std::size_t m_at = 0;
};

/// An attribute with the space in front of it. Nothing is taken when there is none.
bool takeAttribute(Cursor& cursor) {
  Cursor ahead = cursor;
  if (ahead.takeSpace() == 0) return false;
  if (!isLetter(ahead.peek()) && ahead.peek() != '_' && ahead.peek() != ':') return false;
  ahead.takeWhile([](char c) { return isAlphanumeric(c) || std::string_view("_.:-").contains(c); });
  cursor = ahead;
  ahead.takeSpace();
  if (!ahead.take('=')) return true;
  ahead.takeSpace();
  const char quote = ahead.peek();
  if (quote == '"' || quote == '\'') {
    ahead.skip();
    ahead.takeWhile([quote](char c) { return c != quote; });
    if (!ahead.take(quote)) return false;
  } else if (ahead.takeWhile([](char c) { return !std::string_view(" \t\r\n\"'=<>`").contains(c); }) == 0) {
    return false;
  }
  cursor = ahead;
  return true;
}

std::size_t tagLength(std::string_view text) {
  Cursor cursor(text);
  cursor.skip();
  const bool closing = cursor.take('/');
  if (!isLetter(cursor.peek())) return 0;
  cursor.takeWhile([](char c) { return isAlphanumeric(c) || c == '-'; });
  while (!closing && takeAttribute(cursor)) {
  }
  cursor.takeSpace();
  if (!closing) cursor.take('/');
  return cursor.take('>') ? cursor.at() : 0;
}

std::optional<std::string_view> takeBracketedDestination(Cursor& cursor) {
  cursor.skip();
  const std::size_t begin = cursor.at();
  while (!cursor.atEnd() && cursor.peek() != '>') {
    if (cursor.peek() == '<' || isLineEnd(cursor.peek())) return std::nullopt;
    if (cursor.peek() == '\\' && isEscapable(cursor.peek(1))) cursor.skip();
    cursor.skip();
  }
  const std::string_view destination = cursor.since(begin);
  return cursor.take('>') ? std::optional(destination) : std::nullopt;
}

std::optional<std::string_view> takeBareDestination(Cursor& cursor) {
  constexpr std::size_t kDeepest = 32;  // more would let each of many "(" look at all that follows
  const std::size_t begin = cursor.at();
  std::size_t depth = 0;
  for (; !cursor.atEnd() && cursor.peek() != ' ' && !isControl(cursor.peek()); cursor.skip()) {
    if (cursor.peek() == '\\' && isEscapable(cursor.peek(1))) {
      cursor.skip();
    } else if (cursor.peek() == '(') {
      if (++depth > kDeepest) return std::nullopt;
    } else if (cursor.peek() == ')') {
      if (depth == 0) break;
      --depth;
    }
  }
  return depth == 0 ? std::optional(cursor.since(begin)) : std::nullopt;
}

bool takeTitle(Cursor& cursor) {
  const char open = cursor.peek();
  if (open != '"' && open != '\'' && open != '(') return false;
  const char close = open == '(' ? ')' : open;
  cursor.skip();
  while (!cursor.atEnd() && cursor.peek() != close) {
    if (cursor.peek() == '(' && open == '(') return false;
    if (cursor.peek() == '\\' && isEscapable(cursor.peek(1))) cursor.skip();
    cursor.skip();
  }
  return cursor.take(close);
}

std::optional<CharacterReference> numericReference(Cursor cursor) {
  const bool hexadecimal = cursor.take('x') || cursor.take('X');
  const std::size_t begin = cursor.at();
  const std::size_t most = hexadecimal ? 6 : 7;
  const int base = hexadecimal ? 16 : 10;
  const std::size_t digits = cursor.takeWhile(
      [&](char c) { return isDigit(c) || (hexadecimal && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))); });
  const std::string_view number = cursor.since(begin);
  if (digits == 0 || digits > most || !cursor.take(';')) return std::nullopt;
  std::uint32_t code = 0;
  std::from_chars(number.data(), number.data() + number.size(), code, base);
  return CharacterReference{.length = cursor.at(), .text = base::utf8(code == 0 ? U'\uFFFD' : code)};
}

/// By its index, what ends a construct of HTML.
constexpr std::array<std::string_view, 4> kTerminators = {"-->", "?>", "]]>", ">"};
constexpr std::size_t kComment = 0;
constexpr std::size_t kInstruction = 1;
constexpr std::size_t kCData = 2;
constexpr std::size_t kDeclaration = 3;

}  // namespace

bool isEscapable(char c) {
  return static_cast<unsigned char>(c) < 0x80 && base::isPunctuation(static_cast<char32_t>(c));
}

std::size_t uriAutolinkLength(std::string_view text) {
  constexpr std::size_t kShortestScheme = 2;
  constexpr std::size_t kLongestScheme = 32;
  Cursor cursor(text);
  cursor.skip();
  if (!isLetter(cursor.peek())) return 0;
  const std::size_t scheme =
      cursor.takeWhile([](char c) { return isAlphanumeric(c) || std::string_view("+.-").contains(c); });
  if (scheme < kShortestScheme || scheme > kLongestScheme || !cursor.take(':')) return 0;
  cursor.takeWhile([](char c) { return !isControl(c) && !std::string_view(" <>").contains(c); });
  return cursor.take('>') ? cursor.at() : 0;
}

std::size_t emailAutolinkLength(std::string_view text) {
  constexpr std::size_t kLongestLabel = 63;
  Cursor cursor(text);
  cursor.skip();
  const std::size_t local = cursor.takeWhile(
      [](char c) { return isAlphanumeric(c) || std::string_view(".!#$%&'*+/=?^_`{|}~-").contains(c); });
  if (local == 0 || !cursor.take('@')) return 0;
  do {
    const std::size_t begin = cursor.at();
    cursor.takeWhile([](char c) { return isAlphanumeric(c) || c == '-'; });
    const std::string_view label = cursor.since(begin);
    if (label.empty() || label.size() > kLongestLabel || label.front() == '-' || label.back() == '-') return 0;
  } while (cursor.take('.'));
  return cursor.take('>') ? cursor.at() : 0;
}

std::optional<CharacterReference> characterReference(std::string_view text) {
  constexpr std::size_t kLongestName = 31;
  Cursor cursor(text);
  cursor.skip();
  if (cursor.take('#')) {
    auto reference = numericReference(cursor);
    return reference;
  }
  const std::size_t begin = cursor.at();
  if (cursor.takeWhile(isAlphanumeric) > kLongestName) return std::nullopt;
  const std::string_view name = cursor.since(begin);
  if (!cursor.take(';')) return std::nullopt;
  auto character = namedEntity(name);
  if (!character) return std::nullopt;
  return CharacterReference{.length = cursor.at(), .text = *std::move(character)};
}

std::string resolved(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of("\\&"), text.size());
    result += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    if (text.front() == '\\') {
      if (text.size() > 1 && isEscapable(text[1])) text.remove_prefix(1);
    } else if (const auto reference = characterReference(text)) {
      result += reference->text;
      text.remove_prefix(reference->length);
      continue;
    }
    result += text.front();
    text.remove_prefix(1);
  }
  return result;
}

std::optional<LinkTarget> linkTarget(std::string_view text) {
  Cursor cursor(text);
  if (!cursor.take('(')) return std::nullopt;
  cursor.takeSpace();
  const auto destination = cursor.peek() == '<' ? takeBracketedDestination(cursor) : takeBareDestination(cursor);
  if (!destination) return std::nullopt;
  if (cursor.takeSpace() > 0 && takeTitle(cursor)) cursor.takeSpace();
  if (!cursor.take(')')) return std::nullopt;
  return LinkTarget{.length = cursor.at(), .destination = *destination};
}

std::size_t HtmlScanner::length(std::size_t at) {
  const std::string_view text = m_text.substr(at);
  if (text.starts_with("<!-->")) return 5;
  if (text.starts_with("<!--->")) return 6;
  if (text.starts_with("<!--")) return lengthUpTo(kComment, at, at + 4);
  if (text.starts_with("<?")) return lengthUpTo(kInstruction, at, at + 2);
  if (text.starts_with("<![CDATA[")) return lengthUpTo(kCData, at, at + 9);
  if (text.starts_with("<!")) return text.size() > 2 && isLetter(text[2]) ? lengthUpTo(kDeclaration, at, at + 3) : 0;
  return tagLength(text);
}

std::size_t HtmlScanner::lengthUpTo(std::size_t terminator, std::size_t at, std::size_t from) {
  auto& found = m_found.at(terminator);
  if (!found || *found < from) found = m_text.find(kTerminators.at(terminator), from);
  return *found == std::string_view::npos ? 0 : *found + kTerminators.at(terminator).size() - at;
}

BacktickRuns::BacktickRuns(std::string_view text) {
  for (std::size_t at = text.find('`'); at != std::string_view::npos;) {
    const std::size_t end = std::min(text.find_first_not_of('`', at), text.size());
    m_runs.emplace_back(end - at, at);
    at = text.find('`', end);
  }
  std::ranges::sort(m_runs);
}

std::optional<std::size_t> BacktickRuns::find(std::size_t length, std::size_t from) const {
  const auto found = std::ranges::lower_bound(m_runs, std::pair(length, from));
  return found == m_runs.end() || found->first != length ? std::nullopt : std::optional(found->second);
}

}  // namespace varnel::markdown
