// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "core/wire/pairing.h"
#include "tools/inspect/command_line.h"

namespace varnel::inspect {

int runCall(const CommandLine& command);

/// For the usage: a line an operation.
std::string operationList();

/// The pairing that the options describe; nothing, with the reason on standard error, when they do not.
std::optional<wire::PairingCredentials> credentialsFrom(const CommandLine& command);

}  // namespace varnel::inspect
