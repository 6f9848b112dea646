// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iostream>

#include "core/json/text.h"
#include "host/cli/commands.h"
#include "host/cli/control_client.h"
#include "host/cli/qr_code.h"
#include "host/service/log.h"

namespace varnel::cli {

using json::JSONValue;

namespace {

constexpr std::chrono::seconds kAnswerTime{10};

/// The answer to a pairing command.
struct Offer {
  std::string payload;
  double expiresAt = 0;
};

/// Says how long the code still works: on a terminal as one line that is rewritten, else once.
class Countdown {
 public:
  explicit Countdown(double expiresAt) : m_expiresAt(expiresAt), m_onTerminal(::isatty(STDOUT_FILENO) != 0) {}

  void show() {
    if (!m_onTerminal && m_shown) return;
    m_shown = true;
    const auto left = std::max(0L, static_cast<long>(m_expiresAt) - static_cast<long>(std::time(nullptr)));
    const std::string seconds = std::to_string(left % 60);
    std::cout << (m_onTerminal ? "\r\x1b[K" : "") << "valid for " << left / 60 << ":" << (seconds.size() < 2 ? "0" : "")
              << seconds << (m_onTerminal ? "" : "\n") << std::flush;
  }
  void replace(const std::string& line) const { std::cout << (m_onTerminal ? "\r\x1b[K" : "") << line << std::endl; }

 private:
  double m_expiresAt;
  bool m_onTerminal;
  bool m_shown = false;
};

bool wantsColours() {
  const char* refused = std::getenv("NO_COLOR");
  return ::isatty(STDOUT_FILENO) != 0 && (refused == nullptr || *refused == '\0');
}

int noBridge(const std::filesystem::path& stateDirectory) {
  return fail("No bridge is running. Start one with: varnel serve --state-dir " + stateDirectory.string());
}

int show(const Offer& offer) {
  const auto drawing = drawQrCode(offer.payload, wantsColours());
  if (!drawing) return fail(drawing.error());
  std::cout << offer.payload << "\n" << *drawing << std::flush;
  return 0;
}

void printJson(const JSONValue& value) {
  std::cout << json::write(value).value_or("{}") << std::endl;
}

int await(ControlClient& bridge, const Offer& offer, bool asJson) {
  Countdown countdown(offer.expiresAt);
  for (;;) {
    if (!asJson) countdown.show();
    const auto said = bridge.receive(std::chrono::seconds(1));
    if (!said && said.error() == ControlClient::Silence::TimedOut) continue;
    if (!asJson && ::isatty(STDOUT_FILENO) != 0) countdown.replace("");
    if (!said) return fail("The bridge has stopped.");
    if (said->member("replaced") != nullptr) return fail("Another pairing code has taken the place of this one.");
    if (said->member("claimedBy") == nullptr) return fail("The pairing code has expired.");
    if (asJson) {
      printJson(*said);
    } else {
      countdown.replace("claimed by " + service::printable(textMember(*said, "claimedBy")));
    }
    return 0;
  }
}

}  // namespace

int pair(const PairOptions& options) {
  auto bridge = ControlClient::connect(options.stateDirectory);
  if (!bridge) return noBridge(options.stateDirectory);
  if (!bridge->send(JSONValue::Object{{"command", "pair"}})) return noBridge(options.stateDirectory);
  const auto answer = bridge->receive(kAnswerTime);
  const auto* expiresAt = answer ? answer->member("expiresAt") : nullptr;
  if (expiresAt == nullptr || expiresAt->number() == nullptr) return fail("The bridge does not answer.");
  const Offer offer{.payload = textMember(*answer, "payload"), .expiresAt = *expiresAt->number()};
  if (options.picture) {
    if (const auto written = writeQrPicture(offer.payload, *options.picture); !written) return fail(written.error());
  }
  if (options.json) {
    printJson(*answer);
  } else if (const int failed = show(offer); failed != 0) {
    return failed;
  }
  return await(*bridge, offer, options.json);
}

}  // namespace varnel::cli
