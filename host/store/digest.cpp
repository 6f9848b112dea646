// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/digest.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <stdexcept>
#include <vector>

namespace varnel::store {

namespace {

void require(int result) {
  if (result != 1) throw std::runtime_error("the cryptographic library failed");
}

}  // namespace

struct DigestBuilder::State {
  struct Free {
    void operator()(EVP_MD_CTX* used) const { EVP_MD_CTX_free(used); }
  };
  std::unique_ptr<EVP_MD_CTX, Free> context{EVP_MD_CTX_new()};
};

DigestBuilder::DigestBuilder() : m_state(std::make_unique<State>()) {
  require(EVP_DigestInit_ex(m_state->context.get(), EVP_sha256(), nullptr));
}
DigestBuilder::~DigestBuilder() = default;
DigestBuilder::DigestBuilder(DigestBuilder&&) noexcept = default;
DigestBuilder& DigestBuilder::operator=(DigestBuilder&&) noexcept = default;

DigestBuilder& DigestBuilder::add(std::string_view piece) {
  require(EVP_DigestUpdate(m_state->context.get(), piece.data(), piece.size()));
  return *this;
}

Digest DigestBuilder::finish() {
  Digest digest{};
  require(EVP_DigestFinal_ex(m_state->context.get(), digest.data(), nullptr));
  return digest;
}

Digest digestOf(std::string_view data) {
  return DigestBuilder().add(data).finish();
}

std::string_view bytesOf(const Digest& digest) {
  return {reinterpret_cast<const char*>(digest.data()), digest.size()};
}

bool sameBytes(std::string_view left, std::string_view right) {
  return left.size() == right.size() && CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

std::string randomText(std::size_t bytes) {
  constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  std::vector<unsigned char> random(bytes);
  require(RAND_bytes(random.data(), static_cast<int>(bytes)));
  std::string text;
  unsigned int bits = 0;
  int held = 0;
  for (const unsigned char byte : random) {
    bits = (bits << 8U) | byte;
    for (held += 8; held >= 6; held -= 6) text += kAlphabet[(bits >> static_cast<unsigned>(held - 6)) & 63U];
  }
  if (held > 0) text += kAlphabet[(bits << static_cast<unsigned>(6 - held)) & 63U];
  return text;
}

}  // namespace varnel::store
