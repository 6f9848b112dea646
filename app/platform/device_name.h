// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace varnel::platform {

/// The name by which the owner of this device knows it; never empty.
std::string deviceName();

}  // namespace varnel::platform
