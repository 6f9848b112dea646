// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/pairing.h"

#include <gmock/gmock.h>

#include "host/service/repeats.h"
#include "host/store/store.h"

namespace varnel::service {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class PairingTest : public ::testing::Test {
 protected:
  Outcome<wire::ClaimResult> claim(const std::string& secret) {
    return pairing.claim({.secret = secret, .deviceName = "Phone"});
  }

  milliseconds now{1'000'000};
  Clock clock{.wall = [this] { return static_cast<double>(now.count()) / 1000; }, .elapsed = [this] { return now; }};
  std::unique_ptr<store::Store> store = store::Store::open(":memory:", "/nowhere").value();
  Pairing pairing{store->devices, clock};
};

TEST_F(PairingTest, secretWorksOnceAndForFiveMinutes) {
  auto offer = pairing.offer({});
  EXPECT_EQ(offer.expiresAt, 1300);
  EXPECT_GE(offer.secret.size(), 22U) << "fewer than 128 bits";
  now += seconds(299);
  const auto claimed = claim(offer.secret);
  ASSERT_TRUE(claimed);
  EXPECT_GE(claimed->token.size(), 43U) << "fewer than 256 bits";
  EXPECT_EQ(store->devices.findByToken(store::digestOf(claimed->token))->id, claimed->deviceId);
  const auto used = claim(offer.secret);

  offer = pairing.offer({});
  now += seconds(301);
  const auto expired = claim(offer.secret);
  const auto wrong = claim("wrong");
  EXPECT_FALSE(used);
  EXPECT_EQ(used, expired) << "used and expired can be told apart";
  EXPECT_EQ(used, wrong) << "used and wrong can be told apart";
  EXPECT_EQ(store->devices.list().size(), 1U);
}

TEST_F(PairingTest, oneSecretIsLiveAtATime) {
  std::vector<std::optional<std::string>> ended;
  const auto note = [&](const std::optional<std::string>& claimedBy) { ended.push_back(claimedBy); };
  const auto first = pairing.offer(note);
  const auto second = pairing.offer(note);
  EXPECT_FALSE(claim(first.secret));
  pairing.withdraw(first);
  EXPECT_TRUE(claim(second.secret));
  const auto third = pairing.offer(note);
  pairing.withdraw(third);
  EXPECT_FALSE(claim(third.secret));
  EXPECT_THAT(ended, ::testing::ElementsAre(std::nullopt, std::optional<std::string>("Phone")));
}

TEST_F(PairingTest, pausesAfterTenFailuresEvenForTheRightSecret) {
  const auto offer = pairing.offer({});
  for (int i = 0; i < 10; ++i) EXPECT_EQ(claim("wrong").error().kind, Failure::Kind::Forbidden) << i;
  EXPECT_EQ(claim(offer.secret).error().kind, Failure::Kind::TooManyRequests);
  now += seconds(59);
  EXPECT_EQ(claim(offer.secret).error().kind, Failure::Kind::TooManyRequests);
  now += seconds(1);
  EXPECT_TRUE(claim(offer.secret));
}

TEST(DeviceName, isShortAndNeverEmpty) {
  EXPECT_EQ(deviceName("  Ann's phone \n"), "Ann's phone");
  EXPECT_EQ(deviceName(" \t"), "Unnamed device");
  std::string longName;
  for (int i = 0; i < 100; ++i) longName += "é";
  EXPECT_EQ(deviceName(longName).size(), 2 * Pairing::kNameLength);
}

class RepeatsTest : public PairingTest {
 protected:
  void SetUp() override {
    for (const auto* id : {"d1", "d2"}) {
      store->devices.add({.id = id, .name = "", .createdAt = 0, .lastSeenAt = {}}, store::digestOf(id));
    }
  }
  static Repeats::Request request(const char* device, const char* body) {
    return {.deviceId = device, .key = "K", .content = store::digestOf(body)};
  }
  Repeats repeats{store->answers, clock};
};

TEST_F(RepeatsTest, answersAgainForADayAndPerDevice) {
  const Repeats::Answer answer{.status = 200, .body = R"({"threadId":"x"})"};
  EXPECT_EQ(repeats.begin(request("d1", "a")), std::nullopt);
  EXPECT_EQ(repeats.begin(request("d1", "a")).error().kind, Failure::Kind::Conflict);
  repeats.finish(request("d1", "a"), answer);
  EXPECT_EQ(repeats.begin(request("d1", "a")), answer);
  EXPECT_EQ(repeats.begin(request("d1", "b")).error().kind, Failure::Kind::Mismatch);
  EXPECT_EQ(repeats.begin(request("d2", "b")), std::nullopt) << "another device's key is not its own";
  Repeats restarted(store->answers, clock);
  EXPECT_EQ(restarted.begin(request("d1", "a")), answer);
  now += std::chrono::hours(24) + seconds(1);
  EXPECT_EQ(repeats.begin(request("d1", "a")), std::nullopt);
}

TEST_F(RepeatsTest, forgetsFailuresOfOurOwnAndKeepsRefusals) {
  ASSERT_EQ(repeats.begin(request("d1", "a")), std::nullopt);
  repeats.finish(request("d1", "a"), {.status = 503, .body = "{}"});
  EXPECT_EQ(repeats.begin(request("d1", "a")), std::nullopt) << "a failed attempt is taken for an answer";
  repeats.finish(request("d1", "a"), {.status = 404, .body = "no"});
  EXPECT_EQ(repeats.begin(request("d1", "a"))->value().status, 404);
  store->devices.remove("d1");
  repeats.finish(request("d1", "c"), {.status = 200, .body = "{}"});  // answered after the device was revoked
}

}  // namespace
}  // namespace varnel::service
