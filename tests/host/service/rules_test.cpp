// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "core/json/text.h"
#include "core/live/catalogue.h"
#include "host/service/coalescer.h"
#include "host/service/conversations.h"
#include "host/service/cursor.h"
#include "host/service/log.h"
#include "host/service/preferences.h"

namespace varnel::service {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = agent::Change::Kind;
using std::chrono::milliseconds;

Coalescer::Due due(const std::string& id, std::set<Kind> kinds) {
  return {.sessionId = id, .kinds = std::move(kinds), .turnId = {}};
}

TEST(Coalescer, tellsTheFirstAtOnceThenTwiceASecondAndTheLastAlways) {
  Coalescer coalescer;
  std::vector<long> told;
  // A change every 10 ms for 1.2 s; who asks when told to sees each event in time.
  for (long now = 0; now <= 3000; now += 10) {
    if (now <= 1200) coalescer.note({.kind = Kind::Item, .sessionId = "a"});
    const auto next = coalescer.next();
    const bool isDue = next && *next <= milliseconds(now);
    const auto taken = coalescer.take(milliseconds(now));
    EXPECT_EQ(isDue, !taken.empty()) << now;
    if (!taken.empty()) told.push_back(now);
  }
  EXPECT_THAT(told, ElementsAre(0, 500, 1000, 1500));
  EXPECT_FALSE(coalescer.next());
}

TEST(Coalescer, mergesWhatWaitsAndKeepsConversationsApart) {
  Coalescer coalescer;
  coalescer.note({.kind = Kind::Item, .sessionId = "a"});
  EXPECT_THAT(coalescer.take(milliseconds(0)), ElementsAre(due("a", {Kind::Item})));
  coalescer.note({.kind = Kind::Item, .sessionId = "a"});
  coalescer.note({.kind = Kind::Plan, .sessionId = "a", .turnId = "t1"});
  coalescer.note({.kind = Kind::Turn, .sessionId = "b"});
  EXPECT_THAT(coalescer.take(milliseconds(100)), ElementsAre(due("b", {Kind::Turn})));
  EXPECT_EQ(coalescer.next(), milliseconds(500));
  auto merged = due("a", {Kind::Item, Kind::Plan});
  merged.turnId = "t1";
  EXPECT_THAT(coalescer.take(milliseconds(500)), ElementsAre(merged));
  EXPECT_THAT(coalescer.take(milliseconds(5000)), IsEmpty());
}

TEST(Cursor, isReadOnlyWhereItWasWrittenFor) {
  const Cursor cursor{.updatedAt = 1795387085.3459870815, .id = "id with blank"};
  const auto text = writeCursor("archived", cursor);
  EXPECT_EQ(readCursor("archived", text), cursor);
  EXPECT_FALSE(readCursor("search x", text));
  EXPECT_FALSE(readCursor("archived", text.substr(2)));
  EXPECT_FALSE(readCursor("archived", text + "00"));
  for (const auto* bad : {"", "1", "zz", "0011223344556677"}) EXPECT_FALSE(readCursor("archived", bad)) << bad;
}

TEST(Triage, putsWhatWaitsForTheUserFirst) {
  std::vector<wire::SessionSummary> sessions;
  const auto add = [&](const char* id, wire::CodexTurnState state, double at, bool pinned) {
    auto& session = sessions.emplace_back();
    session.id = id;
    session.state = state;
    session.active = state == wire::CodexTurnState::Working;
    session.updatedAt = at;
    session.pinned = pinned;
  };
  using enum wire::CodexTurnState;
  add("done, new", Done, 9, false);
  add("failed, newer", Failed, 10, false);
  add("working, old", Working, 2, false);
  add("asks, oldest", NeedsInput, 1, false);
  add("pinned, done", Done, 0, true);
  add("pinned, asks", NeedsInput, 0, true);
  sortForTriage(sessions);
  std::vector<std::string> order;
  for (const auto& session : sessions) order.push_back(session.id);
  EXPECT_THAT(
      order, ElementsAre("pinned, asks", "pinned, done", "asks, oldest", "working, old", "failed, newer", "done, new"));
}

TEST(Preferences, takeOnlyWordsOfTheCatalogue) {
  const auto catalogue = live::parseModels(
      json::parse(R"({"data": [{"id": "a", "supportedReasoningEfforts": ["low"], "defaultReasoningEffort": "low",
        "isDefault": true, "serviceTiers": [{"id": "fast", "name": "Fast"}]}]})")
          .value());
  const wire::SettingsBody good{.mode = "plan", .model = "a", .reasoningEffort = "low", .serviceTier = "fast"};
  ASSERT_TRUE(readPreferences(good, catalogue));
  EXPECT_EQ(readPreferences(good, catalogue)->serviceTier, "fast");
  auto tierless = good;
  tierless.serviceTier = "default";
  EXPECT_EQ(readPreferences(tierless, catalogue)->serviceTier, std::nullopt);
  using Body = wire::SettingsBody;
  for (auto Body::* word : {&Body::mode, &Body::model, &Body::reasoningEffort, &Body::serviceTier}) {
    auto bad = good;
    bad.*word = "unheard of";
    EXPECT_FALSE(readPreferences(bad, catalogue)) << readPreferences(bad, catalogue).error().text;
  }
  wire::NewSessionBody fresh;
  fresh.mode = "default";
  EXPECT_TRUE(readPreferences(completed(fresh, catalogue), catalogue));
  const auto plain = live::parseModels(json::parse(R"({"data": [{"id": "a", "isDefault": true}]})").value());
  EXPECT_TRUE(readPreferences(completed(fresh, plain), plain)) << "a model without efforts cannot be used";
  auto effort = completed(fresh, plain);
  effort.reasoningEffort = "low";
  EXPECT_FALSE(readPreferences(effort, plain));
  fresh.model = "b";
  EXPECT_FALSE(readPreferences(completed(fresh, catalogue), catalogue));
}

TEST(Printable, letsNothingActOnATerminal) {
  EXPECT_EQ(printable("Ann’s phone 日本"), "Ann’s phone 日本");
  EXPECT_EQ(printable("a\x1b[2Jb\n\t"), "a\\u{1b}[2Jb\\u{a}\\u{9}");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): a sign that turns the text around is what is tested
  const std::string turned = "a\u202Eb\u200B";
  EXPECT_EQ(printable(turned), "a\\u{202e}b\\u{200b}");
  EXPECT_EQ(printable("a\xff"), "a\\xff");
}

}  // namespace
}  // namespace varnel::service
