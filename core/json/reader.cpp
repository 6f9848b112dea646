// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/reader.h"

#include <array>
#include <optional>
#include <string>

#include "core/base/text.h"
#include "core/json/block_scan.h"
#include "core/json/excerpt.h"
#include "core/json/number.h"
#include "core/json/string_scan.h"
#include "core/json/text.h"

namespace varnel::json {

namespace {

using detail::Escape;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr std::string_view describe(Kind kind) {
  constexpr std::array<std::string_view, 6> kNames = {"null",     "a boolean", "a number",
                                                      "a string", "an object", "an array"};
  return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace

struct Reader::NumberToken {
  std::string_view text;
  bool negative = false;
  bool small = false;         ///< short and without an exponent, so that every double holds it
  std::ptrdiff_t digits = 0;  ///< of which those after the point are
  std::ptrdiff_t fraction = 0;
  std::uint64_t decimal = 0;  ///< the value of the digits without the point, when 64 bits hold it

  /// The double, where dividing two that are exact gives it.
  [[nodiscard]] std::optional<double> quotient() const {
    constexpr std::ptrdiff_t kExactDigits = 15;
    if (!small || digits > kExactDigits) return std::nullopt;
    constexpr std::array kPowers = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};
    const double size = static_cast<double>(decimal) / kPowers[static_cast<std::size_t>(fraction)];
    return negative ? -size : size;
  }
};

Reader::Reader(std::string_view text) : Reader(TrustUtf8(), text) {
  if (!isUtf8(text)) fail("not UTF-8");
}

Reader::Reader(std::shared_ptr<const std::string> text) : Reader(std::string_view(*text)) {
  m_owner = std::move(text);
}

bool Reader::fail(std::string reason) {
  if (!m_failed) m_error = {.path = {}, .reason = std::move(reason)};
  m_failed = true;
  // Nothing is left to read.
  m_position = m_end;
  return false;
}

bool Reader::failAt(const char* place, std::string_view reason) {
  return fail(std::string(reason) + " at byte " + std::to_string(place - m_begin));
}

void Reader::rewind(const Mark& mark) {
  m_position = mark.position;
  m_depth = mark.depth;
  m_first = mark.first;
  m_failed = false;
}

bool Reader::unexpected() {
  if (m_position == m_end) return failAt(m_position, "unexpected end of text");
  const std::string_view rest(m_position, m_end);
  return failAt(m_position, "unexpected " + excerpt(rest.substr(0, base::firstCodePoint(rest).length)));
}

bool Reader::peek(Kind& kind) {
  skipSpace();
  if (m_position == m_end) return unexpected();
  switch (*m_position) {
    case '{':
      kind = Kind::Object;
      return true;
    case '[':
      kind = Kind::Array;
      return true;
    case '"':
      kind = Kind::String;
      return true;
    case 't':
    case 'f':
      kind = Kind::Bool;
      return true;
    case 'n':
      kind = Kind::Null;
      return true;
    default:
      if (*m_position != '-' && !isDigit(*m_position)) return unexpected();
      kind = Kind::Number;
      return true;
  }
}

bool Reader::mismatch(std::string_view wanted) {
  Kind found{};
  if (!peek(found)) return false;
  return fail("expected " + std::string(wanted) + ", found " + std::string(describe(found)));
}

bool Reader::expect(Kind wanted, char opening) {
  skipSpace();
  if (m_position == m_end || *m_position != opening) return mismatch(describe(wanted));
  return true;
}

bool Reader::literal(std::string_view word) {
  if (std::string_view(m_position, m_end).starts_with(word)) {
    m_position += word.size();
    return true;
  }
  return unexpected();
}

bool Reader::readNull() {
  return expect(Kind::Null, 'n') && literal("null");
}

bool Reader::readBool(bool& out) {
  skipSpace();
  out = m_position != m_end && *m_position == 't';
  if (out) return literal("true");
  return expect(Kind::Bool, 'f') && literal("false");
}

bool Reader::scanNumber(NumberToken& token) {
  const char* p = m_position;
  const auto digits = [&p, &token, this] {
    const char* begin = p;
    for (; p != m_end && isDigit(*p); ++p) token.decimal = token.decimal * 10 + static_cast<std::uint64_t>(*p - '0');
    token.digits += p - begin;
    return p - begin;
  };
  const auto broken = [&p, this] {
    m_position = p;
    return unexpected();
  };
  token.negative = *p == '-';
  if (token.negative) ++p;
  const char* integer = p;
  const auto integerDigits = digits();
  if (integerDigits == 0) return broken();
  if (*integer == '0' && integerDigits > 1) {
    p = integer + 1;
    return broken();
  }
  token.small = integerDigits < 300;
  if (p != m_end && *p == '.') {
    ++p;
    token.fraction = digits();
    if (token.fraction == 0) return broken();
  }
  if (p != m_end && (*p == 'e' || *p == 'E')) {
    ++p;
    token.small = false;
    if (p != m_end && (*p == '+' || *p == '-')) ++p;
    if (digits() == 0) return broken();
  }
  token.text = {m_position, p};
  m_position = p;
  return true;
}

bool Reader::readDouble(double& out) {
  Kind kind{};
  if (!peek(kind)) return false;
  if (kind != Kind::Number) return mismatch("a number");
  NumberToken token;
  if (!scanNumber(token)) return false;
  const auto quotient = token.quotient();
  const auto value = quotient ? quotient : doubleFromNumber(token.text);
  if (!value) return fail("number out of range");
  out = *value;
  return true;
}

bool Reader::readInteger(std::int64_t& out) {
  Kind kind{};
  if (!peek(kind)) return false;
  if (kind != Kind::Number) return mismatch("an integer");
  NumberToken token;
  if (!scanNumber(token)) return false;
  constexpr std::ptrdiff_t kSafeDigits = 18;
  if (token.small && token.fraction == 0 && token.digits <= kSafeDigits) {
    const auto size = static_cast<std::int64_t>(token.decimal);
    out = token.negative ? -size : size;
    return true;
  }
  const IntegerResult result = integerFromNumber(token.text);
  if (result.fault == IntegerFault::NotIntegral) return fail("expected an integer, found a number with a fraction");
  if (result.fault == IntegerFault::OutOfRange) return fail("integer out of range");
  out = result.value;
  return true;
}

/// Finds the end of the string whose opening quote stands next and checks all of it; `raw` is what stands between the
/// quotes. Most strings are short and hold no escapes.
inline bool Reader::scanString(std::string_view& raw, bool& escaped) {
  const char* begin = m_position + 1;
  const char* p = detail::skipPlainStart(begin, m_end);
  escaped = false;
  if ((p == m_end || *p != '"') && !scanRest(p, escaped)) return false;
  raw = {begin, p};
  m_position = p + 1;
  return true;
}

/// The rest of such a string, from anywhere in it to the closing quote.
bool Reader::scanRest(const char*& p, bool& escaped) {
  for (;;) {
    p = detail::blockKernel().scan(p, m_end, escaped);
    if (p != m_end && *p != '"') p = detail::skipPlain(p, m_end);
    if (p == m_end) {
      m_position = p;
      return unexpected();
    }
    if (*p == '"') return true;
    if (*p != '\\') return failAt(p, "control character in a string");
    escaped = true;
    if (m_end - p > 1 && detail::simpleEscape(p[1]) != 0) {
      p += 2;
      continue;
    }
    const Escape escape = detail::readUnicodeEscape(p, m_end);
    if (escape.lone) return failAt(p, "lone surrogate");
    if (escape.length == 0) return failAt(p, "bad escape");
    p += escape.length;
  }
}

bool Reader::readText(std::string_view& out) {
  bool escaped = false;
  if (!expect(Kind::String, '"') || !scanString(out, escaped)) return false;
  if (escaped) out = resolved(out);
  return true;
}

/// What stands between the quotes of a string that was found right, its escapes resolved.
std::string_view Reader::resolved(std::string_view raw) {
  // No escape is shorter than what it stands for, so the result never overtakes the text.
  constexpr std::size_t kSpare = 64;
  m_resolved.resize_and_overwrite(raw.size() + kSpare, [raw, this](char* begin, std::size_t) {
    const char* end = raw.end();
    auto at = detail::blockKernel().copy({.from = raw.begin(), .to = begin}, end, m_end);
    while (at.from != end) {
      if (*at.from == '\\') {
        detail::resolveEscape(at, end);
      } else {
        *at.to++ = *at.from++;
      }
    }
    return static_cast<std::size_t>(at.to - begin);
  });
  return m_resolved;
}

bool Reader::enter() {
  if (m_depth == kMaxDepth) return fail("nested deeper than " + std::to_string(kMaxDepth));
  ++m_depth;
  ++m_position;
  m_first = true;
  return true;
}

bool Reader::expectObject() {
  return expect(Kind::Object, '{');
}

bool Reader::enterObject() {
  return expect(Kind::Object, '{') && enter();
}

bool Reader::enterArray() {
  return expect(Kind::Array, '[') && enter();
}

inline bool Reader::colon() {
  skipSpace();
  if (m_position == m_end || *m_position != ':') return unexpected();
  ++m_position;
  return true;
}

bool Reader::readKey(std::string_view& key) {
  skipSpace();
  if (m_position == m_end || *m_position != '"') return unexpected();
  bool escaped = false;
  if (!scanString(key, escaped)) return false;
  if (escaped) key = resolved(key);
  return colon();
}

bool Reader::nextMember(std::string_view& key, bool& more) {
  if (!separator('}', more)) return false;
  return !more || readKey(key);
}

bool Reader::nextElement(bool& more) {
  return separator(']', more);
}

inline bool Reader::skipScalar() {
  switch (*m_position) {
    case '"': {
      std::string_view ignored;
      bool escaped = false;
      return scanString(ignored, escaped);
    }
    case 'n':
      return literal("null");
    case 't':
      return literal("true");
    case 'f':
      return literal("false");
    default: {
      if (*m_position != '-' && !isDigit(*m_position)) return unexpected();
      NumberToken token;
      if (!scanNumber(token)) return false;
      return token.small || doubleFromNumber(token.text) || fail("number out of range");
    }
  }
}

/// Moves past a key and its colon.
inline bool Reader::skipKey() {
  skipSpace();
  if (m_position == m_end || *m_position != '"') return unexpected();
  std::string_view ignored;
  bool escaped = false;
  return scanString(ignored, escaped) && colon();
}

/// Moves past a scalar or into a container.
inline bool Reader::skipStep(Objects& objects) {
  skipSpace();
  if (m_position == m_end) return unexpected();
  const char opening = *m_position;
  if (opening != '{' && opening != '[') return skipScalar();
  if (!enter()) return false;
  objects[static_cast<std::size_t>(m_depth)] = opening == '{';
  return true;
}

bool Reader::skipValue(std::string_view& text) {
  skipSpace();
  const char* begin = m_position;
  const int outside = m_depth;
  Objects objects;
  if (!skipStep(objects)) return false;
  while (m_depth > outside) {
    const bool inObject = objects[static_cast<std::size_t>(m_depth)];
    bool more = false;
    if (!separator(inObject ? '}' : ']', more)) return false;
    if (!more) continue;
    if (inObject && !skipKey()) return false;
    if (!skipStep(objects)) return false;
  }
  text = {begin, m_position};
  return true;
}

bool Reader::readRaw(RawValue& out) {
  std::string_view text;
  if (!skipValue(text)) return false;
  out = m_owner ? RawValue::share(m_owner, text) : RawValue::copy(text);
  return true;
}

bool Reader::finish() {
  skipSpace();
  if (m_failed) return false;
  return m_position == m_end || unexpected();
}

}  // namespace varnel::json
