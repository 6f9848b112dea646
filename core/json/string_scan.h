// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

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

/// The first quote, backslash or control character, or the end.
inline const char* skipPlain(const char* p, const char* end) {
#if defined(__SSE2__)
  const __m128i quote = _mm_set1_epi8('"');
  const __m128i slash = _mm_set1_epi8('\\');
  const __m128i control = _mm_set1_epi8(0x1f);
  for (; end - p >= 16; p += 16) {
    __m128i v;
    std::memcpy(&v, p, sizeof v);
    const __m128i hit = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, quote), _mm_cmpeq_epi8(v, slash)),
                                     _mm_cmpeq_epi8(_mm_min_epu8(v, control), v));
    const int mask = _mm_movemask_epi8(hit);
    if (mask != 0) return p + std::countr_zero(static_cast<unsigned>(mask));
  }
#endif
  return skipPlainPortable(p, end);
}

}  // namespace varnel::json::detail
