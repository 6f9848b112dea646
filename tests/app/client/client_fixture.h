// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
const ClientError& errorOf(const Result<T>& result) {
  static const ClientError none = Cancelled{};
  EXPECT_FALSE(result.has_value());
  return result ? none : result.error();
}

template <class Alternative, class T>
const Alternative* failure(const Result<T>& result) {
  return result ? nullptr : std::get_if<Alternative>(&result.error());
}

}  // namespace varnel::client
