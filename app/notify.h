// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace varnel {

/// `--notify ID`, which the user's systemd runs at the moment of a reminder: shows it, without a window or a display.
/// The program's exit code, or nothing when the command line asks for something else. Makes a QCoreApplication, so it
/// comes before any other.
std::optional<int> notifyFromCommandLine(int argc, char** argv);

}  // namespace varnel
