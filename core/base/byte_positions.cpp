// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/base/byte_positions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace varnel::base {

namespace {

constexpr std::size_t kBlock = 64;
/// How many places are written for a block before anybody asks whether there are so many: most have few, and no branch
/// would be harder to predict.
constexpr std::size_t kUnasked = 2;

/// Writes the places of the set bits, counted from `at`, and says how many there are.
[[gnu::always_inline]] inline std::size_t putPlaces(std::uint64_t found, std::size_t at, std::size_t* out) {
  const auto count = static_cast<std::size_t>(std::popcount(found));
  for (std::size_t i = 0; i < kUnasked; ++i) {
    *out++ = at + static_cast<std::size_t>(std::countr_zero(found));
    found &= found - 1;
  }
  for (; found != 0; found &= found - 1) *out++ = at + static_cast<std::size_t>(std::countr_zero(found));
  return count;
}

/// Looks at `size` bytes from place `at` on, a multiple of a block, and says how many places it wrote.
using FindInBlocks = std::size_t (*)(std::string_view text, std::size_t at, std::size_t size, char byte,
                                     std::size_t* out);

#if defined(__SSE2__)

std::size_t findNarrow(std::string_view text, std::size_t at, std::size_t size, char byte, std::size_t* out) {
  constexpr std::size_t kVector = 16;
  const __m128i wanted = _mm_set1_epi8(byte);
  const std::size_t* const begin = out;
  for (const std::size_t end = at + size; at < end; at += kBlock) {
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < kBlock; i += kVector) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at + i));
      found |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted)))} << i;
    }
    out += putPlaces(found, at, out);
  }
  return static_cast<std::size_t>(out - begin);
}

[[gnu::target("avx2,bmi,bmi2,popcnt,lzcnt")]] std::size_t findWide(std::string_view text, std::size_t at,
                                                                   std::size_t size, char byte, std::size_t* out) {
  constexpr std::size_t kVector = 32;
  const __m256i wanted = _mm256_set1_epi8(byte);
  const std::size_t* const begin = out;
  for (const std::size_t end = at + size; at < end; at += kBlock) {
    std::uint64_t found = 0;
    for (std::size_t i = 0; i < kBlock; i += kVector) {
      const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text.data() + at + i));
      found |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(bytes, wanted)))} << i;
    }
    out += putPlaces(found, at, out);
  }
  return static_cast<std::size_t>(out - begin);
}

FindInBlocks findInBlocks() {
  // What has AVX2 but one of the others is no processor that was ever sold.
  const bool wide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
                    __builtin_cpu_supports("popcnt");
  return wide ? findWide : findNarrow;
}

#else

FindInBlocks findInBlocks() {
  return [](std::string_view text, std::size_t at, std::size_t size, char byte, std::size_t* out) {
    const std::size_t* const begin = out;
    for (const std::size_t end = at + size; at < end; ++at) {
      *out = at;
      out += text[at] == byte ? 1 : 0;
    }
    return static_cast<std::size_t>(out - begin);
  };
}

#endif

}  // namespace

void BytePositions::find(std::string_view text, char byte) {
  constexpr std::size_t kChunk = 64 * kBlock;
  static const FindInBlocks kFind = findInBlocks();
  m_count = 0;
  const std::size_t whole = text.size() - text.size() % kBlock;
  for (std::size_t at = 0; at < whole; at += kChunk) {
    const std::size_t size = std::min(kChunk, whole - at);
    makeRoom(size);
    m_count += kFind(text, at, size, byte, m_places.get() + m_count);
  }
  // What is left as a block of its own; what is found behind the end is left out.
  const std::string_view left = text.substr(whole);
  std::array<char, kBlock> last{};
  std::ranges::copy(left, last.begin());
  makeRoom(kBlock);
  std::size_t* const places = m_places.get() + m_count;
  const std::size_t found = kFind({last.data(), last.size()}, 0, kBlock, byte, places);
  for (std::size_t i = 0; i < found && places[i] < left.size(); ++i, ++m_count) places[i] += whole;
}

void BytePositions::makeRoom(std::size_t more) {
  const std::size_t needed = m_count + more + kUnasked;
  if (needed <= m_capacity) return;
  m_capacity = std::max(needed, 2 * m_capacity);
  // NOLINTNEXTLINE(modernize-avoid-c-arrays): what m_places is
  auto places = std::make_unique_for_overwrite<std::size_t[]>(m_capacity);
  std::copy_n(m_places.get(), m_count, places.get());
  m_places = std::move(places);
}

}  // namespace varnel::base
