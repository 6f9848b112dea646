// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/ids.h"

#include <ranges>

namespace varnel::agent::demo {

namespace {

std::string hex(std::uint64_t value, int digits) {
  std::string text(static_cast<std::size_t>(digits), '0');
  for (char& digit : std::views::reverse(text)) {
    digit = "0123456789abcdef"[value & 15U];
    value >>= 4U;
  }
  return text;
}

}  // namespace

IdStream::IdStream(std::uint64_t seed, std::string_view name) : m_state(seed) {
  // FNV-1a: std::hash may differ from one library to the next, and ids must not.
  std::uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  m_state ^= hash;
  next();
}

std::uint64_t IdStream::next() {
  // splitmix64
  m_state += 0x9e3779b97f4a7c15U;
  std::uint64_t z = m_state;
  z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31U);
}

std::string IdStream::uuid() {
  const std::uint64_t high = next();
  const std::uint64_t low = next();
  return hex(high >> 32U, 8) + "-" + hex(high >> 16U, 4) + "-7" + hex(high, 3) + "-" + hex(8U | (low >> 62U), 1) +
         hex(low >> 48U, 3) + "-" + hex(low, 12);
}

std::string IdStream::itemId(std::string_view prefix) {
  return std::string(prefix) + "_" + hex(next(), 16);
}

}  // namespace varnel::agent::demo
