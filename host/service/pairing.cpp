// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/pairing.h"

#include "host/store/fold.h"

namespace varnel::service {

namespace {

constexpr std::size_t kSecretBytes = 16;
constexpr std::size_t kTokenBytes = 32;
constexpr std::size_t kDeviceIdBytes = 12;

}  // namespace

Pairing::Offer Pairing::offer(OnEnd onEnd) {
  const auto replaced = m_live ? m_live->onEnd : nullptr;
  Offer offer{.secret = store::randomText(kSecretBytes),
              .expiresAt = m_clock.wall() + static_cast<double>(kLifetime.count())};
  m_live =
      Live{.secret = store::digestOf(offer.secret), .expiry = m_clock.elapsed() + kLifetime, .onEnd = std::move(onEnd)};
  if (replaced) replaced(std::nullopt);
  return offer;
}

void Pairing::withdraw(const Offer& offer) {
  if (m_live && m_live->secret == store::digestOf(offer.secret)) m_live.reset();
}

Outcome<wire::ClaimResult> Pairing::claim(const wire::ClaimBody& body) {
  if (isPaused()) return refuse(Failure::Kind::TooManyRequests, "Too many failed attempts. Try again in a minute.");
  const auto onEnd = m_live ? m_live->onEnd : nullptr;
  if (!takeSecret(body.secret)) {
    noteFailure();
    return refuse(Failure::Kind::Forbidden, "This pairing code is not valid (any more). Show a new one.");
  }
  m_failures = 0;
  wire::ClaimResult result{.deviceId = store::randomText(kDeviceIdBytes), .token = store::randomText(kTokenBytes)};
  const store::Device device{.id = result.deviceId,
                             .name = deviceName(body.deviceName),
                             .createdAt = m_clock.wall(),
                             .lastSeenAt = std::nullopt};
  m_devices.add(device, store::digestOf(result.token));
  if (onEnd) onEnd(device.name);
  return result;
}

bool Pairing::isPaused() const {
  return m_pausedUntil && m_clock.elapsed() < *m_pausedUntil;
}

bool Pairing::takeSecret(std::string_view secret) {
  // The same work whatever is the matter: without a live secret the comparison runs against nothing that matches.
  const auto claimed = store::digestOf(secret);
  const auto live = m_live ? m_live->secret : store::Digest{};
  const bool matches = store::sameBytes(store::bytesOf(claimed), store::bytesOf(live));
  const bool isFresh = m_live && m_clock.elapsed() <= m_live->expiry;
  if (!matches || !isFresh) return false;
  m_live.reset();
  return true;
}

void Pairing::noteFailure() {
  if (++m_failures < kFailuresAllowed) return;
  m_failures = 0;
  m_pausedUntil = m_clock.elapsed() + kPause;
}

std::string deviceName(std::string_view name) {
  constexpr std::string_view kBlank = " \t\r\n";
  const auto begin = name.find_first_not_of(kBlank);
  if (begin == std::string_view::npos) return "Unnamed device";
  name = name.substr(begin, name.find_last_not_of(kBlank) - begin + 1);
  return std::string(store::firstCharacters(name, Pairing::kNameLength));
}

}  // namespace varnel::service
