// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/cli/device_commands.h"

#include <algorithm>

#include "host/cli/control_client.h"
#include "host/service/pairing.h"

namespace varnel::cli {

using json::JSONValue;

namespace {

JSONValue errorOf(std::string text) {
  return JSONValue::Object{{"error", std::move(text)}};
}

JSONValue listOf(const store::Devices& devices) {
  JSONValue::Array list;
  for (const auto& device : devices.list()) {
    JSONValue::Object entry{{"id", device.id}, {"name", device.name}, {"createdAt", device.createdAt}};
    if (device.lastSeenAt) entry.emplace("lastSeenAt", *device.lastSeenAt);
    list.emplace_back(std::move(entry));
  }
  return JSONValue::Object{{"devices", std::move(list)}};
}

/// The id of the one device that is meant, or the reason why none is.
std::expected<std::string, std::string> findDevice(const store::Devices& devices, const std::string& wanted) {
  const auto list = devices.list();
  if (std::ranges::find(list, wanted, &store::Device::id) != list.end()) return wanted;
  const auto isNamed = [&](const store::Device& device) { return device.name == wanted; };
  const auto count = std::ranges::count_if(list, isNamed);
  if (count == 0) return std::unexpected("There is no device \"" + wanted + "\".");
  if (count > 1) return std::unexpected("Several devices are called \"" + wanted + "\"; name one by its id.");
  return std::ranges::find_if(list, isNamed)->id;
}

}  // namespace

std::optional<JSONValue> answerDeviceCommand(const JSONValue& request, store::Devices& devices, const Revoke& revoke) {
  const std::string command = textMember(request, "command");
  if (command == "devices") return listOf(devices);
  if (command != "revoke" && command != "rename") return std::nullopt;
  const auto device = findDevice(devices, textMember(request, "device"));
  if (!device) return errorOf(device.error());
  if (command == "revoke") {
    revoke(*device);
  } else {
    devices.rename(*device, service::deviceName(textMember(request, "name")));
  }
  return listOf(devices);
}

}  // namespace varnel::cli
