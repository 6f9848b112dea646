// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "core/base/url.h"

namespace varnel::live {

/// Why a secret may not be sent to the address that a pairing code names, in a sentence for people; nothing for a good
/// one, which is http or https with a host and without a user. Reads the text alone and looks nothing up.
std::optional<std::string> refusalOfPairingAddress(const base::Url& address);

}  // namespace varnel::live
