// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/inspect/command_line.h"

namespace varnel::inspect {

/// Prints events until `count` of them came (status 0), the stream ended or one does not decode (status 1).
int runEvents(const CommandLine& command);

}  // namespace varnel::inspect
