// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "core/wire/usage.h"

namespace varnel::live {

/// The window that stands for the whole report: the primary one where there is one, else the general one.
std::optional<wire::RateLimitWindow> shownWindow(const wire::UsageEnvelope& usage);

}  // namespace varnel::live
