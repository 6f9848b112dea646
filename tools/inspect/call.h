// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/client/api_client.h"
#include "core/wire/pairing.h"
#include "tools/inspect/command_line.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

int runCall(const CommandLine& command);

/// One operation of the client by its name, with the JSON text of its arguments; nothing when none is called so.
std::optional<client::Task<Outcome>> startOperation(client::APIClient& api, std::string_view name,
                                                    std::string_view arguments);

/// For the usage: a line an operation.
std::string operationList();

/// The pairing that the options describe; nothing, with the reason on standard error, when they do not.
std::optional<wire::PairingCredentials> credentialsFrom(const CommandLine& command);

}  // namespace varnel::inspect
