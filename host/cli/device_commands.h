// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/json/value.h"
#include "host/store/devices.h"

namespace varnel::cli {

/// Ends what a device may do; false when there is none.
using Revoke = std::function<bool(const std::string& deviceId)>;

/// `{"command": "devices"}`, `{"command": "revoke", "device"}`, `{"command": "rename", "device", "name"}`: the devices
/// as they are afterwards, `{"devices": [...]}`, or `{"error"}`. A device is named by its id or, where only one has it,
/// by its name. Nothing for another command.
std::optional<json::JSONValue> answerDeviceCommand(const json::JSONValue& request, store::Devices& devices,
                                                   const Revoke& revoke);

}  // namespace varnel::cli
