// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <ctime>
#include <iomanip>
#include <iostream>

#include "core/json/text.h"
#include "host/cli/commands.h"
#include "host/cli/control_client.h"
#include "host/cli/device_commands.h"
#include "host/service/log.h"
#include "host/store/state_directory.h"
#include "host/store/store.h"

namespace varnel::cli {

using json::JSONValue;

namespace {

constexpr std::chrono::seconds kAnswerTime{10};

std::expected<JSONValue, std::string> askBridge(ControlClient& bridge, const JSONValue& request) {
  if (!bridge.send(request)) return std::unexpected("The bridge has stopped.");
  auto answer = bridge.receive(kAnswerTime);
  if (!answer) return std::unexpected("The bridge does not answer.");
  return std::move(*answer);
}

/// Does the bridge's work on its files while none runs.
std::expected<JSONValue, std::string> askFiles(const std::filesystem::path& path, const JSONValue& request) {
  if (!std::filesystem::exists(store::StateDirectory::database(path))) {
    return std::unexpected("There is no state in " + path.string() + ".");
  }
  const auto directory = store::StateDirectory::take(path);
  if (!directory) return std::unexpected("The state directory cannot be used: " + directory.error() + ".");
  const auto opened = store::Store::open(directory->database(), directory->uploads());
  if (!opened) return std::unexpected("The state cannot be read: " + opened.error() + ".");
  auto& devices = (*opened)->devices;
  auto answer = answerDeviceCommand(request, devices, [&](const std::string& id) { return devices.remove(id); });
  return answer.value_or(JSONValue());
}

std::string dateOf(const JSONValue* time) {
  if (time == nullptr || time->number() == nullptr) return "never";
  const auto seconds = static_cast<std::time_t>(*time->number());
  std::tm local{};
  ::localtime_r(&seconds, &local);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &local);
  return text.data();
}

void print(const JSONValue::Array& devices) {
  if (devices.empty()) std::cout << "no device is paired\n";
  for (const auto& device : devices) {
    std::cout << std::left << std::setw(18) << textMember(device, "id") << "paired "
              << dateOf(device.member("createdAt")) << "  last seen " << std::setw(18)
              << dateOf(device.member("lastSeenAt")) << service::printable(textMember(device, "name")) << "\n";
  }
}

}  // namespace

int devices(const DevicesOptions& options) {
  JSONValue::Object request{{"command", options.command}, {"device", options.device}, {"name", options.name}};
  auto bridge = ControlClient::connect(options.stateDirectory);
  const auto answer = bridge ? askBridge(*bridge, request) : askFiles(options.stateDirectory, request);
  if (!answer) return fail(answer.error());
  if (answer->member("error") != nullptr) return fail(textMember(*answer, "error"));
  const auto* list = answer->member("devices");
  if (list == nullptr || list->array() == nullptr) return fail("The bridge does not answer as expected.");
  if (options.json) {
    std::cout << json::write(*list).value_or("[]") << "\n";
  } else {
    print(*list->array());
  }
  return 0;
}

}  // namespace varnel::cli
