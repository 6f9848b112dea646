// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/pairing.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(PairPayload, (), (version, baseURL, secret))
BOOST_DESCRIBE_STRUCT(PairingCredentials, (), (baseURL, deviceId, token))

}  // namespace varnel::wire
