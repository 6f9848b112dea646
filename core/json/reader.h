// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/json/decode_error.h"
#include "core/json/key.h"
#include "core/json/raw_value.h"

namespace varnel::json {

/// How deep objects and arrays may stand in each other, over a whole document.
inline constexpr int kMaxDepth = 512;

enum class Kind { Null, Bool, Number, String, Object, Array };

/// A pull reader over one JSON text: the caller says what it wants next, the reader moves forward once and checks every
/// byte it passes, those of skipped values too. Nothing is allocated for what holds no escapes.
///
/// Every function returns false on the first failure, after which only `error` may be used. The text must outlive the
/// reader and need not end in a NUL.
class Reader {
 public:
  /// Checks that the text is UTF-8 before anything is read.
  explicit Reader(std::string_view text);
  /// The same, and values that are kept as text share this one.
  explicit Reader(std::shared_ptr<const std::string> text);
  /// Leaves it to the caller to check that what is read of the text is UTF-8.
  struct TrustUtf8 {};
  Reader(TrustUtf8 /*trust*/, std::string_view text)
      : m_begin(text.data()), m_position(m_begin), m_end(m_begin + text.size()) {}

  /// What stands next, without moving; fails at the end of the text and where no value can begin.
  bool peek(Kind& kind);

  bool readNull();
  bool readBool(bool& out);
  /// Any number that a double can hold, rounded to the nearest; smaller ones become zero, larger ones fail.
  bool readDouble(double& out);
  /// Numbers without a fraction, however they are written (`100`, `1.0`, `1e2`), within 64 bits; exact.
  bool readInteger(std::int64_t& out);
  /// A string without its escapes; valid until the next call.
  bool readText(std::string_view& out);

  /// An object is `enterObject`, then `nextMember` and a value in turn until it sets `more` to false. The key is valid
  /// until the next call.
  bool enterObject();
  /// Fails, without moving, unless an object stands next.
  bool expectObject();
  bool nextMember(std::string_view& key, bool& more);
  /// `nextMember` in two steps: `more` is set as there, and then either this key, spelled without escapes, is next and
  /// passed over, or nothing moves and `readKey` tells what stands there.
  bool hasMember(bool& more);
  bool takeKey(const Key& key);
  bool readKey(std::string_view& key);
  /// An array is `enterArray`, then `nextElement` and a value in turn until it sets `more` to false.
  bool enterArray();
  bool nextElement(bool& more);

  /// Passes over one value of any kind, checked as strictly as if it were read, and gives its text.
  bool skipValue(std::string_view& text);
  /// `skipValue` that keeps what it passed over.
  bool readRaw(RawValue& out);

  /// True when nothing but white space is left.
  bool finish();

  /// Makes the reader fail with a reason of the caller's own.
  bool fail(std::string reason);
  [[nodiscard]] bool failed() const { return m_failed; }
  DecodeError& error() { return m_error; }

  /// How many bytes were passed.
  [[nodiscard]] std::size_t offset() const { return static_cast<std::size_t>(m_position - m_begin); }
  /// Goes on behind another element of the array whose elements are being read.
  void moveBehindElement(std::size_t offset) {
    m_position = m_begin + offset;
    m_first = false;
  }

  /// A place to come back to, even after a failure.
  struct Mark {
    const char* position;
    int depth;
    bool first;
  };
  [[nodiscard]] Mark mark() const { return {m_position, m_depth, m_first}; }
  void rewind(const Mark& mark);

 private:
  struct NumberToken;

  void skipSpace();
  bool expect(Kind wanted, char opening);
  bool mismatch(std::string_view wanted);
  bool literal(std::string_view word);
  /// Moves past a comma or the closing bracket; `more` tells which.
  bool separator(char closing, bool& more);
  bool scanNumber(NumberToken& token);
  bool scanString(std::string_view& raw, bool& escaped);
  bool scanRest(const char*& p, bool& escaped);
  std::string_view resolved(std::string_view raw);
  bool colon();
  bool skipKey();
  using Objects = std::bitset<kMaxDepth + 1>;  ///< by depth, which of the containers around are objects
  bool skipStep(Objects& objects);
  bool skipScalar();
  bool enter();
  bool unexpected();
  bool failAt(const char* place, std::string_view reason);

  const char* m_begin;
  const char* m_position;
  const char* m_end;
  int m_depth = 0;
  bool m_first = false;  ///< right after an opening bracket
  bool m_failed = false;
  std::string m_resolved;                      ///< the last text that held escapes
  std::shared_ptr<const std::string> m_owner;  ///< of the whole text, when it may be shared
  DecodeError m_error;
};

// What runs for every member stands here, so that a record's loop is one piece.

inline void Reader::skipSpace() {
  // Compact text has none.
  if (m_position != m_end && static_cast<unsigned char>(*m_position) > ' ') return;
  while (m_position != m_end && std::string_view(" \n\r\t").contains(*m_position)) ++m_position;
}

inline bool Reader::separator(char closing, bool& more) {
  skipSpace();
  if (m_position == m_end) return unexpected();
  if (*m_position == closing) {
    ++m_position;
    --m_depth;
    m_first = false;
    more = false;
    return true;
  }
  more = true;
  if (m_first) {
    m_first = false;
    return true;
  }
  if (*m_position != ',') return unexpected();
  ++m_position;
  return true;
}

inline bool Reader::hasMember(bool& more) {
  return separator('}', more);
}

inline bool Reader::takeKey(const Key& key) {
  skipSpace();
  if (!key.stands(m_position, m_end)) return false;
  m_position += key.size();
  return true;
}

}  // namespace varnel::json
