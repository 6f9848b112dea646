// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/pairing_address.h"

#include <algorithm>
#include <string_view>

namespace varnel::live {
namespace {

bool isWebScheme(std::string_view scheme) {
  const auto same = [](char written, char expected) { return (written | 0x20) == expected; };
  return std::ranges::equal(scheme, std::string_view("http"), same) ||
         std::ranges::equal(scheme, std::string_view("https"), same);
}

}  // namespace

std::optional<std::string> refusalOfPairingAddress(const base::Url& address) {
  const auto parts = address.parts();
  if (!isWebScheme(parts.scheme)) return "The pairing code names an address that is not http or https.";
  const std::string_view authority = parts.authority.value_or("");
  if (authority.contains('@')) return "The pairing code names an address with a user name in it.";
  if (authority.empty() || authority.starts_with(':')) return "The pairing code names an address without a host.";
  return std::nullopt;
}

}  // namespace varnel::live
