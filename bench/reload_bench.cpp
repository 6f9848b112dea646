// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// How long it takes to bring a conversation that is on the screen up to date, from the body of the answer to the rows
// of the list, beside a program that decodes the answer anew and compares it with the one before.
#include <QtCore/QCoreApplication>

#include <array>
#include <cstdio>
#include <cstring>
#include <deque>
#include <exception>
#include <fstream>
#include <span>
#include <sstream>
#include <stdexcept>

#include "bench/corpus_file.h"
#include "bench/json_peers.h"
#include "bench/race.h"
#include "bench/reload_loopback.h"
#include "bench/reload_ours.h"
#include "bench/report.h"
#include "core/live/event_rules.h"
#include "core/wire/codec.h"

namespace varnel::bench {

namespace {

constexpr auto kAtLeast = Bounds::Sense::AtLeast;
constexpr auto kAtMost = Bounds::Sense::AtMost;
constexpr double kTurnSeconds = 0.02;

struct Corpus {
  const char* file;
  std::size_t items;
  int rounds;
  Bounds againstQt;
};

constexpr std::array kCorpora = std::to_array<Corpus>({
    {"d200.json", 200, 31, {kAtLeast, 150, 400}},
    {"d2000.json", 2000, 15, {kAtLeast, 100, 180}},
    {"d20000.json", 20000, 5, {kAtLeast, 50, 80}},
});

/// The most memory that this process has held, in bytes; the first call forgets what was before it.
double peakSoFar() {
  static const bool kForgotten = [] {
    std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
    return true;
  }();
  static_cast<void>(kForgotten);
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes * 1024;
  }
  throw std::runtime_error("the system does not tell its memory");
}

/// The answer, and what it becomes.
struct Bodies {
  std::string before;
  std::string appended;
  std::string lastChanged;
  std::string middleChanged;
  std::string firstChanged;
};

Bodies bodiesOf(std::string text) {
  const auto end = text.rfind(R"(],"pendingRequests")");
  const auto lastTime = text.rfind(R"("timestamp":1)", end);
  // The text of the first reply from there on.
  const auto replyFrom = [&text](std::size_t place) {
    return text.find(R"("text":")", text.find(R"("role":"assistant")", place));
  };
  const auto middle = replyFrom(text.size() / 2);
  const auto first = replyFrom(0);
  if (end == std::string::npos || middle == std::string::npos) throw std::runtime_error("not the corpus");
  const auto with = [&text](std::size_t place, std::string_view what) { return std::string(text).insert(place, what); };
  constexpr std::size_t kToTime = 12;
  constexpr std::size_t kToText = 8;
  return {.before = text,
          .appended = with(end, R"(,{"id":"new","type":"agentMessage","timestamp":1760002077,"role":"assistant",)"
                                R"("text":"All tests pass now."})"),
          .lastChanged = with(lastTime + kToTime, "2"),
          .middleChanged = with(middle + kToText, "Changed. "),
          .firstChanged = with(first + kToText, "Changed. ")};
}

void require(bool holds, const char* fault) {
  if (!holds) throw std::runtime_error(fault);
}

/// A reload leads where decoding from nothing leads, and touches that many rows.
void check(const Bodies& bodies, const std::string& after, std::size_t mostTouched) {
  Conversation reloaded;
  reloaded.reload(bodies.before);
  const std::size_t before = reloaded.touched();
  reloaded.reload(after);
  Conversation fromNothing;
  fromNothing.reload(after);
  require(reloaded.items() == fromNothing.items(), "a reload gives other items than decoding from nothing");
  require(reloaded.rows().records() == fromNothing.rows().records(), "a reload gives other rows");
  const std::size_t touched = reloaded.touched() - before;
  std::printf("  %zu of %zu rows touched\n", touched, fromNothing.rows().records().size());
  require(touched <= mostTouched, "a reload touches rows that did not change");
}

/// What a plain Qt program does: everything is decoded, then compared.
class QtConversation {
 public:
  explicit QtConversation(const std::string& body) : m_before(detailByQt(body).items), m_items(m_before) {}

  void restore() { m_items = m_before; }
  std::size_t reload(const std::string& body) {
    auto items = detailByQt(body).items;
    if (items != m_items) m_items = std::move(items);
    return m_items.size();
  }

 private:
  std::vector<QtItem> m_before;
  std::vector<QtItem> m_items;
};

/// Both ways from the answer before to the one after, and the plain comparison of the bytes, in the same memory.
Race reloadRace(const Bodies& bodies, const std::string& after, std::size_t items, Conversation& ours,
                QtConversation& qt) {
  Race race(after.size(), items);
  const auto handed = std::make_shared<std::string>();
  const auto prepare = [handed, &ours, &bodies](const std::string& body) {
    ours.reload(bodies.before);
    ours.forget();
    *handed = body;
  };
  race.add({"ours",
            [handed, &ours] {
              ours.reload(std::move(*handed));
              return ours.items().size();
            },
            [prepare, &after] { prepare(after); }});
  race.add({"memcmp of the answers",
            [handed, &ours, items] {
              // A volatile result, so that the comparison is not left out.
              const volatile int order = std::memcmp(handed->data(), ours.text().data(), handed->size());
              return order == 0 ? items : 0;
            },
            [prepare, &bodies] { prepare(bodies.before); }});
  race.add({"QJsonDocument and ==", [&qt, &after] { return qt.reload(after); }, [&qt] { qt.restore(); }});
  return race;
}

void printTime(const char* what, const Race& race, double bytes) {
  std::printf("  %-16s ours %10.1f us, memcmp %10.1f us, QJsonDocument and == %10.1f us: %6.1f x, %5.2f x memcmp\n",
              what, bytes / race.rate("ours") * 1e6, bytes / race.rate("memcmp of the answers") * 1e6,
              bytes / race.rate("QJsonDocument and ==") * 1e6, race.ratio("ours", "QJsonDocument and =="),
              race.ratio("memcmp of the answers", "ours"));
  std::fflush(stdout);
}

void measureReload(const Corpus& corpus, Report& report) {
  const Bodies bodies = bodiesOf(readFile(corpusPath(corpus.file)));
  std::printf("\n%s: %zu items, %zu bytes, %d rounds\n", corpus.file, corpus.items, bodies.before.size(),
              corpus.rounds);
  check(bodies, bodies.appended, 1);
  check(bodies, bodies.lastChanged, 1);
  check(bodies, bodies.middleChanged, 1);
  check(bodies, bodies.firstChanged, 1);

  Conversation ours;
  QtConversation qt(bodies.before);
  struct Step {
    const char* name;
    const std::string& after;
    std::size_t items;
  };
  const auto in = std::string(", ") + corpus.file;
  for (const Step& step :
       {Step{"appended", bodies.appended, corpus.items + 1}, Step{"last changed", bodies.lastChanged, corpus.items},
        Step{"middle changed", bodies.middleChanged, corpus.items},
        Step{"first changed", bodies.firstChanged, corpus.items}}) {
    Race race = reloadRace(bodies, step.after, step.items, ours, qt);
    race.run(corpus.rounds, kTurnSeconds);
    printTime(step.name, race, static_cast<double>(step.after.size()));
    if (&step.after != &bodies.appended && &step.after != &bodies.lastChanged) continue;
    const std::string what = std::string(step.name) + in;
    report.add("R1", "x QJsonDocument and ==, one " + what, race.ratio("ours", "QJsonDocument and =="),
               corpus.againstQt);
    report.add("R2", "time, x memcmp of the body, one " + what, race.ratio("memcmp of the answers", "ours"),
               {kAtMost, 1.5, 1.1});
  }
}

/// Seconds for what follows decoding when items are appended one by one to so many.
double secondsPerAppended(const char* file) {
  constexpr std::size_t kAppended = 1000;
  const std::string body = readFile(corpusPath(file));
  Conversation ours;
  ours.reload(body);
  const std::size_t before = ours.items().size();
  Race race(kAppended, before + kAppended);
  std::vector<transcript::ServerChange> changes;
  race.add({"appended",
            [&] {
              for (auto& change : changes) ours.apply(std::move(change));
              return ours.items().size();
            },
            [&] {
              ours.apply({.keptFront = before, .keptBack = 0, .items = {}});
              changes.clear();
              for (std::size_t i = 0; i < kAppended; ++i) {
                changes.push_back({.keptFront = before + i, .keptBack = 0, .items = {}});
                changes.back().items.push_back({.id = "new-" + std::to_string(i),
                                                .type = "agentMessage",
                                                .timestamp = 1,
                                                .role = "assistant",
                                                .phase = {},
                                                .title = {},
                                                .text = "All tests pass now.",
                                                .detail = {},
                                                .status = {}});
              }
            }});
  constexpr int kRounds = 15;
  race.run(kRounds, kTurnSeconds);
  return 1 / race.rate("appended");
}

void measureGrowth(Report& report) {
  const double small = secondsPerAppended("d2000.json");
  const double large = secondsPerAppended("d20000.json");
  std::printf("\nitems, rows and list after one appended item: %.2f us of 2000 items, %.2f us of 20000\n", small * 1e6,
              large * 1e6);
  report.add("R4", "time behind decoding, 20000 items x 2000", large / small, {kAtMost, 1.5, 1});
}

/// Ten thousand events that all have come before the first of them is handled.
void measureBurst(Report& report) {
  constexpr std::size_t kEvents = 10'000;
  std::vector<std::string> texts;
  std::istringstream lines(readFile(corpusPath("events.jsonl")));
  for (std::string line; std::getline(lines, line);) texts.push_back(line);

  const double rest = peakSoFar();
  std::deque<wire::LiveEvent> waiting;
  for (std::size_t i = 0; i < kEvents; ++i) {
    waiting.push_back(wire::decode<wire::LiveEvent>(texts[i % texts.size()]).value());
    waiting.back().sequence = static_cast<std::int64_t>(i);
  }
  std::size_t actions = 0;
  for (std::int64_t expected = 0; !waiting.empty(); ++expected) {
    require(waiting.front().sequence == expected, "an event was handled out of order");
    actions += live::actionsFor(std::move(waiting.front())).size();
    waiting.pop_front();
  }
  require(actions > kEvents / 2, "the events call for nothing");
  report.add("RB", "10,000 events waiting at once, MiB above rest", (peakSoFar() - rest) / (1 << 20), {kAtMost, 8, {}});
}

double measureLoopback() {
  const Bodies bodies = bodiesOf(readFile(corpusPath("d2000.json")));
  return loopbackRatio(bodies.before, bodies.appended);
}

int runAll() {
  Report report;
  measureBurst(report);
  for (const Corpus& corpus : kCorpora) measureReload(corpus, report);
  report.add("R3", "reloads over loopback per second of CPU, x plain Qt, d2000.json", measureLoopback(),
             {kAtLeast, 15, 30});
  measureGrowth(report);
  return report.print() ? 0 : 1;
}

}  // namespace

}  // namespace varnel::bench

int main(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  try {
    return varnel::bench::runAll();
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "reload_bench: %s\n", fault.what());
    return 2;
  }
}
