// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/escape_scan.h"

#include <bit>
#include <cstdint>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace varnel::json::detail {

#if defined(__SSE2__)

namespace {

/// What stands in 64 bytes of text, a bit for each.
struct Block {
  std::uint64_t slashes = 0;
  std::uint64_t stops = 0;    ///< quotes and control characters
  std::uint64_t letters = 0;  ///< what may follow a backslash
};

Block classify(const char* p) {
  Block block;
  for (int i = 0; i < 64; i += 16) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + i));
    const __m128i slash = _mm_cmpeq_epi8(v, _mm_set1_epi8('\\'));
    const __m128i quote = _mm_cmpeq_epi8(v, _mm_set1_epi8('"'));
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(v, _mm_set1_epi8(0x1f)), v);
    const __m128i letter = _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('n')), _mm_cmpeq_epi8(v, _mm_set1_epi8('t')));
    const auto bits = [i](__m128i mask) {
      return static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(mask))) << i;
    };
    block.slashes |= bits(slash);
    block.stops |= bits(_mm_or_si128(quote, control));
    block.letters |= bits(_mm_or_si128(_mm_or_si128(slash, quote), letter));
  }
  return block;
}

[[gnu::target("avx2")]] Block classifyWide(const char* p) {
  Block block;
  for (int i = 0; i < 64; i += 32) {
    const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
    const __m256i slash = _mm256_cmpeq_epi8(v, _mm256_set1_epi8('\\'));
    const __m256i quote = _mm256_cmpeq_epi8(v, _mm256_set1_epi8('"'));
    const __m256i control = _mm256_cmpeq_epi8(_mm256_min_epu8(v, _mm256_set1_epi8(0x1f)), v);
    const __m256i letter =
        _mm256_or_si256(_mm256_cmpeq_epi8(v, _mm256_set1_epi8('n')), _mm256_cmpeq_epi8(v, _mm256_set1_epi8('t')));
    const auto slashBits = static_cast<unsigned>(_mm256_movemask_epi8(slash));
    const auto stopBits = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_or_si256(quote, control)));
    const auto letterBits =
        static_cast<unsigned>(_mm256_movemask_epi8(_mm256_or_si256(_mm256_or_si256(slash, quote), letter)));
    block.slashes |= static_cast<std::uint64_t>(slashBits) << i;
    block.stops |= static_cast<std::uint64_t>(stopBits) << i;
    block.letters |= static_cast<std::uint64_t>(letterBits) << i;
  }
  return block;
}

/// Moves over one block; false when something in it wants to be looked at.
bool pass(const Block& block, const char*& p) {
  constexpr std::uint64_t kOddBits = 0xAAAAAAAAAAAAAAAA;
  // Of a run of backslashes every other one is a letter; the subtraction carries along each run.
  const std::uint64_t ends = (((block.slashes << 1) | kOddBits) - block.slashes) ^ kOddBits;
  const std::uint64_t escaped = ends ^ block.slashes;
  const std::uint64_t open = (ends & block.slashes) >> 63;
  const std::uint64_t stops = (block.stops & ~escaped) | ((escaped & ~block.letters) >> 1);
  p += stops != 0 ? static_cast<std::uint64_t>(std::countr_zero(stops)) : 64 - open;
  return stops == 0;
}

const char* skipNarrow(const char* p, const char* end) {
  while (end - p >= 64 && pass(classify(p), p)) {
  }
  return p;
}

[[gnu::target("avx2")]] const char* skipWide(const char* p, const char* end) {
  while (end - p >= 64 && pass(classifyWide(p), p)) {
  }
  return p;
}

}  // namespace

const char* skipCommonEscapes(const char* p, const char* end) {
  static const auto kSkip = __builtin_cpu_supports("avx2") ? skipWide : skipNarrow;
  return kSkip(p, end);
}

#else

const char* skipCommonEscapes(const char* p, const char* /*end*/) {
  return p;
}

#endif

}  // namespace varnel::json::detail
