// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/wire/session.h"

namespace varnel::transcript {

/// How much of the context window is in use, in whole percent from 0 to 100, cut and not rounded.
int contextUsePercent(const wire::ConversationTokenUsage& usage);

}  // namespace varnel::transcript
