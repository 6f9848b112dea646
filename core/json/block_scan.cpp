// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/block_scan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "core/json/string_scan.h"

namespace varnel::json::detail {

namespace {

/// What stands in 64 bytes of text, a bit for each.
struct Block {
  std::uint64_t slashes = 0;
  std::uint64_t stops = 0;    ///< quotes and control characters
  std::uint64_t letters = 0;  ///< what makes the commonest escapes
};

// Vectors as the compiler knows them: it takes the widest that the function's target has.
using Bytes = unsigned char __attribute__((vector_size(64)));
using Truths = signed char __attribute__((vector_size(64)));

/// A bit for each byte of which all are set.
[[gnu::always_inline]] inline std::uint64_t bits(const Truths& truths) {
#if defined(__clang__)
  using Bits = bool __attribute__((ext_vector_type(64)));
  return std::bit_cast<std::uint64_t>(__builtin_convertvector(truths, Bits));
#else
  std::uint64_t result = 0;
  for (int i = 0; i < 64; ++i) result |= static_cast<std::uint64_t>(truths[i] & 1) << i;
  return result;
#endif
}

[[gnu::always_inline]] inline std::uint64_t slashesIn(const char* p) {
  Bytes bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  return bits(bytes == '\\');
}

[[gnu::always_inline]] inline Block classify(const char* p) {
  Bytes bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  const Truths slashes = bytes == '\\';
  const Truths quotes = bytes == '"';
  const Truths controls = bytes < 0x20;
  const Truths letters = (bytes == 'n') | (bytes == 't') | (bytes == 'r') | slashes | quotes;
  return {.slashes = bits(slashes), .stops = bits(quotes | controls), .letters = bits(letters)};
}

/// Leaves out the rarer escapes: other letters, and numbers that stand for a whole character.
[[gnu::noinline]] std::uint64_t withoutRare(const char* block, const char* end, std::uint64_t faults) {
  for (std::uint64_t rest = faults; rest != 0; rest &= rest - 1) {
    const char* letter = block + std::countr_zero(rest);
    if (simpleEscape(*letter) != 0 || readUnicodeEscape(letter - 1, end).length == 6) faults ^= rest & -rest;
  }
  return faults;
}

/// Goes from block to block; only whether a backslash ends one is carried to the next.
class Scan {
 public:
  Scan(const char* begin, const char* end) : m_position(begin), m_end(end) {}

  [[nodiscard]] bool hasBlock() const { return m_end - m_position >= 64; }
  [[nodiscard]] const char* block() const { return m_position; }

  /// Moves over a block; false when something in it wants to be looked at, which is then the place.
  [[gnu::always_inline]] bool pass(const Block& block) {
    constexpr std::uint64_t kOddBits = 0xAAAAAAAAAAAAAAAA;
    // Of a run of backslashes every other one is a letter; the subtraction carries along each run.
    const std::uint64_t slashes = block.slashes & ~m_open;
    const std::uint64_t ends = (((slashes << 1) | kOddBits) - slashes) ^ kOddBits;
    const std::uint64_t letters = ends ^ (block.slashes | m_open);
    std::uint64_t faults = letters & ~block.letters;
    if (faults != 0) faults = withoutRare(m_position, m_end, faults);
    const std::uint64_t stops = (block.stops & ~letters) | faults;
    if (stops != 0) {
      const std::uint64_t before = (stops & -stops) - 1;
      m_seen |= block.slashes & before;
      // What is no such escape begins one byte before its letter.
      m_position += std::countr_zero(stops) - ((faults & ~before & (before + 1)) != 0 ? 1 : 0);
      m_open = 0;
      return false;
    }
    m_seen |= block.slashes;
    m_open = (ends & block.slashes) >> 63;
    m_position += 64;
    return true;
  }

  /// Where it came to, never between a backslash and its letter.
  const char* finish(bool& escaped) const {
    escaped = escaped || m_seen != 0;
    return m_position - m_open;
  }

 private:
  const char* m_position;
  const char* m_end;
  std::uint64_t m_open = 0;  ///< 1 when the last byte was a backslash that wants its letter
  std::uint64_t m_seen = 0;  ///< any bit: there were backslashes
};

[[gnu::always_inline]] inline const char* scan(const char* p, const char* end, bool& escaped) {
  Scan scan(p, end);
  while (scan.hasBlock() && scan.pass(classify(scan.block()))) {
  }
  return scan.finish(escaped);
}

/// Copies 64 bytes, whether they are wanted or not: cheaper than to ask.
[[gnu::always_inline]] inline void copyAll(const Copied& at) {
  Bytes bytes;
  std::memcpy(&bytes, at.from, sizeof bytes);
  std::memcpy(at.to, &bytes, sizeof bytes);
}

[[gnu::always_inline]] inline Copied copy(Copied at, const char* end, const char* readable) {
  // From an escape that begins a block's last byte on.
  constexpr std::ptrdiff_t kFarthest = 63 + 12 + 64;
  while (at.from != end && readable - at.from >= kFarthest) {
    const char* block = at.from;
    const auto size = std::min<std::ptrdiff_t>(64, end - block);
    copyAll(at);
    for (std::uint64_t left = slashesIn(block) << (64 - size) >> (64 - size); left != 0;) {
      const auto place = std::countr_zero(left);
      at.to += block + place - at.from;
      at.from = block + place;
      resolveEscape(at, end);
      copyAll(at);
      const auto next = at.from - block;
      left = next < 64 ? left >> next << next : 0;
    }
    if (at.from - block >= size) continue;
    at.to += block + size - at.from;
    at.from = block + size;
  }
  return at;
}

const char* scanBaseline(const char* p, const char* end, bool& escaped) {
  return scan(p, end, escaped);
}

Copied copyBaseline(Copied at, const char* end, const char* readable) {
  return copy(at, end, readable);
}

constexpr BlockKernel kBaseline = {.scan = scanBaseline, .copy = copyBaseline};

#if defined(__x86_64__)
[[gnu::target("avx2,bmi,bmi2")]] const char* scanAvx2(const char* p, const char* end, bool& escaped) {
  return scan(p, end, escaped);
}

[[gnu::target("avx2,bmi,bmi2")]] Copied copyAvx2(Copied at, const char* end, const char* readable) {
  return copy(at, end, readable);
}

[[gnu::target("avx512bw,avx512vl,bmi,bmi2")]] const char* scanAvx512(const char* p, const char* end, bool& escaped) {
  return scan(p, end, escaped);
}

[[gnu::target("avx512bw,avx512vl,bmi,bmi2")]] Copied copyAvx512(Copied at, const char* end, const char* readable) {
  return copy(at, end, readable);
}
#endif

}  // namespace

std::vector<BlockKernel> blockKernels() {
  std::vector<BlockKernel> result = {kBaseline};
#if defined(__x86_64__)
  const bool hasBits = __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
  if (hasBits && __builtin_cpu_supports("avx2")) result.push_back({.scan = scanAvx2, .copy = copyAvx2});
  if (hasBits && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl")) {
    result.push_back({.scan = scanAvx512, .copy = copyAvx512});
  }
#endif
  return result;
}

const BlockKernel& blockKernel() {
  static const BlockKernel kBest = blockKernels().back();
  return kBest;
}

}  // namespace varnel::json::detail
