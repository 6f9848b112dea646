// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/wire/bodies.h"
#include "host/service/clock.h"
#include "host/service/failure.h"
#include "host/store/devices.h"

namespace varnel::service {

/// Lets phones in. One secret is live at a time, in memory only and as a hash; it serves one claim within five
/// minutes. Wrong, used and expired ones are told apart by nobody. After ten failures no claim is heard for a minute,
/// from wherever it comes.
class Pairing {
 public:
  static constexpr std::chrono::seconds kLifetime{300};
  static constexpr int kFailuresAllowed = 10;
  static constexpr std::chrono::seconds kPause{60};
  /// Characters of a device's name that are kept.
  static constexpr std::size_t kNameLength = 64;

  Pairing(store::Devices& devices, Clock clock) : m_devices(devices), m_clock(std::move(clock)) {}

  struct Offer {
    std::string secret;
    double expiresAt = 0;  ///< seconds since 1970, UTC
  };
  /// Called once at most: with the name of the device that claimed, or with nothing when a newer offer took its place.
  using OnEnd = std::function<void(const std::optional<std::string>& claimedBy)>;
  /// Makes a new secret; the one before is worth nothing from now on.
  Offer offer(OnEnd onEnd);
  /// Makes an offer worthless, when it is still the live one; `onEnd` is not called.
  void withdraw(const Offer& offer);

  /// The device that was let in. Its token leaves the bridge here and is not kept.
  Outcome<wire::ClaimResult> claim(const wire::ClaimBody& body);

 private:
  struct Live {
    store::Digest secret;
    std::chrono::milliseconds expiry;
    OnEnd onEnd;
  };
  [[nodiscard]] bool isPaused() const;
  [[nodiscard]] bool takeSecret(std::string_view secret);
  void noteFailure();

  store::Devices& m_devices;
  Clock m_clock;
  std::optional<Live> m_live;
  int m_failures = 0;
  std::optional<std::chrono::milliseconds> m_pausedUntil;
};

/// The name as it is kept: its first characters, never empty.
std::string deviceName(std::string_view name);

}  // namespace varnel::service
