// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/inspect/command_line.h"

namespace varnel::inspect {

/// Runs the application's model and prints each change, until the time is over or, without one, standard input has
/// closed and every command has ended. A command that was not understood is named on standard error and makes the
/// status 1.
int runFollow(const CommandLine& command);

}  // namespace varnel::inspect
