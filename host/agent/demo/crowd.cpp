// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/crowd.h"

#include <array>
#include <string>

#include "host/agent/demo/catalogue.h"
#include "host/agent/demo/library.h"
#include "host/agent/demo/scribe.h"
#include "host/agent/demo/tool_runs.h"

namespace varnel::agent::demo {

namespace {

constexpr double kHour = 3600;

void ignore(const Change&) {}

std::unique_ptr<DemoConversation> makeEmpty(std::uint64_t seed, const std::string& key, std::string name,
                                            std::string cwd) {
  auto conversation = std::make_unique<DemoConversation>();
  conversation->ids = IdStream(seed, key);
  auto& summary = conversation->summary;
  summary.id = conversation->ids.uuid();
  summary.name = std::move(name);
  summary.cwd = std::move(cwd);
  summary.project = projectOf(summary);
  summary.turnPreferences = defaultPreferences();
  return conversation;
}

/// One question and one answer, `ended` being the time of the answer.
void tellExchange(DemoConversation& conversation, double ended, const std::string& question,
                  const std::string& answer) {
  double clock = ended - 95;
  Scribe scribe(conversation, [&clock] { return clock; }, ignore);
  scribe.beginTurn();
  scribe.addUserMessage(TurnInput{question, {}, {}, {}});
  clock = ended;
  scribe.beginMessage(true);
  scribe.growMessage(answer);
  scribe.countTokens(9'800, 1'150, 400);
  scribe.endTurn(wire::CodexTurnState::Done);
}

/// One item of the long conversation; eight kinds in turn, of which three are messages.
void tellRound(Scribe& scribe, std::size_t index) {
  const std::string round = std::to_string(index / 8 + 1);
  const std::string file = "/home/mara/src/atlas/tiles/shard_" + round + ".rs";
  const auto use = [&](const ToolRun& run) {
    scribe.beginTool(run);
    scribe.endTool(run, run.status);
  };
  switch (index % 8) {
    case 0:
      scribe.addUserMessage(TurnInput{"Round " + round + ": take the next shard, please.", {}, {}, {}});
      break;
    case 1:
      scribe.beginMessage(false);
      scribe.growMessage("I take shard " + round + ": first what it holds, then the move, then the proof.");
      break;
    case 2:
      use(commandRun("wc -l " + file, "/home/mara/src/atlas", round + "12 " + file + "\n", 0));
      break;
    case 3:
      use(editRun({{file, "update",
                    "@@ -1,3 +1,3 @@\n use crate::tile::Tile;\n-const SHARD: u32 = 0;\n+const SHARD: u32 = " + round +
                        ";\n"}}));
      break;
    case 4:
      use(commandRun("cargo test -p tiles shard_" + round, "/home/mara/src/atlas",
                     "running 6 tests\ntest result: ok. 6 passed; 0 failed\n", 0));
      break;
    case 5:
      scribe.think("**Checking the seams**\n\nNeighbours of shard " + round + " still meet.");
      break;
    case 6:
      use(commandRun("git add -A && git commit -qm 'Move shard " + round + "'", "/home/mara/src/atlas", "", 0));
      break;
    default:
      scribe.beginMessage(true);
      scribe.growMessage("Shard **" + round +
                         "** has moved.\n\n| check | result |\n|---|---|\n| tests | 6 of 6 |\n"
                         "| seams | closed |\n\nThe next one is `shard_" +
                         std::to_string(index / 8 + 2) + "`.");
  }
}

}  // namespace

std::vector<std::unique_ptr<DemoConversation>> makeArchived(std::uint64_t seed, double now) {
  std::vector<std::unique_ptr<DemoConversation>> result;
  IdStream chance(seed, "archive");
  double ended = now - 6 * 24 * kHour;
  for (const ArchiveEntry& entry : library().archive) {
    auto conversation = makeEmpty(seed, "archive/" + entry.name, entry.name, entry.cwd);
    tellExchange(*conversation, ended, entry.question, entry.answer);
    conversation->archived = true;
    result.push_back(std::move(conversation));
    ended -= (5 + static_cast<double>(chance.below(60))) * kHour;
  }
  return result;
}

std::unique_ptr<DemoConversation> makeLarge(std::uint64_t seed, double now, std::size_t count) {
  auto conversation = makeEmpty(seed, "large", "Move the atlas, shard by shard", "/home/mara/src/atlas");
  conversation->items.reserve(count);
  double clock = now - 2 * 24 * kHour;
  const double every = 44 * kHour / static_cast<double>(count);
  Scribe scribe(*conversation, [&clock] { return clock; }, ignore);
  scribe.beginTurn();
  for (std::size_t i = 0; i < count; ++i, clock += every) tellRound(scribe, i);
  scribe.countTokens(4'100'000, 212'000, 90'000);
  scribe.endTurn(wire::CodexTurnState::Done);
  return conversation;
}

std::unique_ptr<DemoConversation> makeExtra(std::uint64_t seed, double now, std::size_t index) {
  static constexpr auto kTasks = std::to_array<std::string_view>(
      {"Tidy the imports", "Pin the toolchain", "Fix a typo in the guide", "Drop a dead flag", "Name the magic number",
       "Answer a review", "Bump the linter", "Split a long test", "Log the retry", "Speed up the cache"});
  static constexpr auto kPlaces =
      std::to_array<std::string_view>({"tidepool", "lantern", "atlas", "kestrel", "homelab", "ferry", "quarry"});
  const std::string number = std::to_string(index + 1);
  const std::string task(kTasks[index % kTasks.size()]);
  const std::string place(kPlaces[index / kTasks.size() % kPlaces.size()]);
  auto conversation = makeEmpty(seed, "extra/" + number, task + " #" + number, "/home/mara/src/" + place);
  tellExchange(*conversation, now - 8 * kHour - 97 * static_cast<double>(index), task + " in " + place + ", please.",
               task + " in " + place + ": done in one commit, tests are green.");
  return conversation;
}

}  // namespace varnel::agent::demo
