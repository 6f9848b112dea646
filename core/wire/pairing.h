// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "core/base/url.h"

namespace varnel::wire {

/// What a pairing code says.
struct PairPayload {
  std::int64_t version = 0;  ///< only 1 is accepted
  base::Url baseURL;
  std::string secret;  ///< single use, five minutes old at most
};
bool operator==(const PairPayload&, const PairPayload&);

/// What pairing leaves behind, and the only thing that lets this device in.
struct PairingCredentials {
  base::Url baseURL;
  std::string deviceId;
  std::string token;
};
bool operator==(const PairingCredentials&, const PairingCredentials&);

}  // namespace varnel::wire
