// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "app/client/api_client.h"
#include "tests/support/fake_bridge.h"
#include "tests/support/waiting.h"

namespace varnel::client {

using support::await;
using support::FakeBridge;
using support::Script;
using support::SeenRequest;
using support::spinUntil;
using namespace std::chrono_literals;

inline constexpr const char* kToken = "s3cret+token/==";

inline wire::PairingCredentials credentialsFor(const std::string& baseURL, const std::string& token = kToken) {
  return {base::Url::parse(baseURL).value(), "device-1", token};
}

/// A client that is paired with a bridge whose every request is scripted.
class PairedClient : public testing::Test {
 protected:
  FakeBridge bridge;
  APIClient client{credentialsFor(bridge.baseURL())};

  /// A client of the same bridge with other limits.
  [[nodiscard]] APIClient limited(ClientOptions options) const {
    return APIClient(credentialsFor(bridge.baseURL()), options);
  }
};

template <class T>
ClientError errorOf(const Result<T>& result) {
  EXPECT_FALSE(result.has_value());
  return result ? ClientError(Cancelled{}) : result.error();
}

/// Nothing when it did not fail, or with another kind of failure.
template <class Alternative, class T>
std::optional<Alternative> failure(const Result<T>& result) {
  const auto* error = result ? nullptr : std::get_if<Alternative>(&result.error());
  return error == nullptr ? std::nullopt : std::optional(*error);
}

}  // namespace varnel::client
