// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace varnel::json::detail {

inline bool endsPlainRun(char c) {
  return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
}

/// Eight bytes at a time on any machine: the classic test for a zero byte, applied to the text with the quote, the
/// backslash and the controls moved to zero in turn.
inline const char* skipPlainPortable(const char* p, const char* end) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kHighs = 0x8080808080808080;
  if constexpr (std::endian::native == std::endian::little) {
    for (; end - p >= 8; p += 8) {
      std::uint64_t v = 0;
      std::memcpy(&v, p, 8);
      const std::uint64_t quote = v ^ (kOnes * '"');
      const std::uint64_t slash = v ^ (kOnes * '\\');
      const std::uint64_t found =
          (((quote - kOnes) & ~quote) | ((slash - kOnes) & ~slash) | ((v - kOnes * 0x20) & ~v)) & kHighs;
      // A borrow can only mark bytes after a true hit, so the lowest mark is right.
      if (found != 0) return p + std::countr_zero(found) / 8;
    }
  }
  while (p != end && !endsPlainRun(*p)) ++p;
  return p;
}

#if defined(__SSE2__)
/// A bit for each quote, backslash and control character among sixteen bytes.
inline unsigned endsOfPlainRuns(__m128i v) {
  const __m128i quote = _mm_cmpeq_epi8(v, _mm_set1_epi8('"'));
  const __m128i slash = _mm_cmpeq_epi8(v, _mm_set1_epi8('\\'));
  const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(v, _mm_set1_epi8(0x1f)), v);
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(_mm_or_si128(quote, slash), control)));
}
#endif

/// As far as the first quote, backslash or control character, the end, or 64 bytes: where most strings end.
inline const char* skipPlainStart(const char* p, const char* end) {
#if defined(__SSE2__)
  for (const char* far = p + 64; end - p >= 16 && p != far; p += 16) {
    __m128i v;
    std::memcpy(&v, p, sizeof v);
    const unsigned found = endsOfPlainRuns(v);
    if (found != 0) return p + std::countr_zero(found);
  }
  return p;
#else
  return skipPlainPortable(p, end - p < 64 ? end : p + 64);
#endif
}

/// The first quote, backslash or control character, or the end.
inline const char* skipPlain(const char* p, const char* end) {
#if defined(__SSE2__)
  for (; end - p >= 16; p += 16) {
    __m128i v;
    std::memcpy(&v, p, sizeof v);
    const unsigned found = endsOfPlainRuns(v);
    if (found != 0) return p + std::countr_zero(found);
  }
#endif
  return skipPlainPortable(p, end);
}

/// What `\n` and its like stand for, by the letter; 0 when the letter is none of them.
inline constexpr auto kSimpleEscapes = [] {
  std::array<char, 256> table{};
  for (const char letter : {'"', '\\', '/'}) table[static_cast<unsigned char>(letter)] = letter;
  table['b'] = '\b';
  table['f'] = '\f';
  table['n'] = '\n';
  table['r'] = '\r';
  table['t'] = '\t';
  return table;
}();

inline char simpleEscape(char letter) {
  return kSimpleEscapes[static_cast<unsigned char>(letter)];
}

/// The values of hexadecimal digits; anything else has bits above them.
inline constexpr auto kHexDigits = [] {
  std::array<unsigned, 256> table{};
  table.fill(0x10000);
  for (unsigned char i = 0; i < 10; ++i) table['0' + i] = i;
  for (unsigned char i = 0; i < 6; ++i) table['a' + i] = table['A' + i] = 10U + i;
  return table;
}();

/// Four hexadecimal digits, or -1.
inline int hexQuad(const char* p, const char* end) {
  if (end - p < 4) return -1;
  const auto digit = [p](int i) { return kHexDigits[static_cast<unsigned char>(p[i])]; };
  const unsigned value = digit(0) << 12 | digit(1) << 8 | digit(2) << 4 | digit(3);
  return value <= 0xFFFF ? static_cast<int>(value) : -1;
}

struct Escape {
  unsigned code = 0;  ///< the character it stands for
  int length = 0;     ///< bytes of the text, the backslash included; 0 when it is none
  bool lone = false;  ///< half of a surrogate pair without the other
};

/// The escape `\uXXXX`, or the pair of them, that begins at the backslash `p`.
inline Escape readUnicodeEscape(const char* p, const char* end) {
  if (end - p < 2 || p[1] != 'u') return {};
  const int first = hexQuad(p + 2, end);
  if (first < 0) return {};
  if (first < 0xD800 || first > 0xDFFF) return {.code = static_cast<unsigned>(first), .length = 6};
  if (first > 0xDBFF || end - p < 12 || p[6] != '\\' || p[7] != 'u') return {.lone = true};
  const int second = hexQuad(p + 8, end);
  if (second < 0xDC00 || second > 0xDFFF) return {.lone = true};
  return {
      .code = 0x10000U + ((static_cast<unsigned>(first) - 0xD800U) << 10) + (static_cast<unsigned>(second) - 0xDC00U),
      .length = 12};
}

/// Writes the UTF-8 of a character and returns where it ends.
inline char* putUtf8(char* out, unsigned code) {
  const auto put = [&out](unsigned byte) { *out++ = static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
  return out;
}

/// How far a string was copied.
struct Copied {
  const char* from;
  char* to;
};

/// Writes what the escape that stands next means.
inline void resolveEscape(Copied& at, const char* end) {
  if (const char simple = simpleEscape(at.from[1]); simple != 0) {
    *at.to++ = simple;
    at.from += 2;
    return;
  }
  const Escape escape = readUnicodeEscape(at.from, end);
  at.to = putUtf8(at.to, escape.code);
  at.from += escape.length;
}

}  // namespace varnel::json::detail
