// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace varnel::store {

/// A SHA-256.
using Digest = std::array<unsigned char, 32>;

Digest digestOf(std::string_view data);
std::string_view bytesOf(const Digest& digest);

/// Takes as long whatever the bytes are, when the lengths are equal.
bool sameBytes(std::string_view left, std::string_view right);

/// A digest of data that comes in pieces.
class DigestBuilder {
 public:
  DigestBuilder();
  ~DigestBuilder();
  DigestBuilder(DigestBuilder&&) noexcept;
  DigestBuilder& operator=(DigestBuilder&&) noexcept;

  DigestBuilder& add(std::string_view piece);
  /// Ends it; nothing may be added afterwards.
  Digest finish();

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

/// That many bytes that nobody can guess, written as base64 for URLs without padding.
std::string randomText(std::size_t bytes);

}  // namespace varnel::store
