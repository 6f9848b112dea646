// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// How quickly an answer of the bridge becomes records, beside the libraries that others would use for it. Decoders are
// compared with each other and tried with broken input before anything is timed.
#include <array>
#include <cstdio>
#include <exception>
#include <span>
#include <sstream>

#include "bench/corpus_file.h"
#include "bench/json_checks.h"
#include "bench/json_ours.h"
#include "bench/json_peers.h"
#include "bench/json_process.h"
#include "bench/process.h"
#include "bench/race.h"
#include "bench/report.h"

namespace varnel::bench {

namespace {

struct Corpus {
  const char* file;
  std::size_t items;
  const char* sha256;
  int rounds;
  Bounds eagerRows;
};

constexpr auto kAtLeast = Bounds::Sense::AtLeast;
constexpr auto kAtMost = Bounds::Sense::AtMost;
constexpr double kTurnSeconds = 0.02;

constexpr std::array kCorpora = std::to_array<Corpus>({
    {"d200.json", 200, "7b74f4e5c1a7b955e3133f9cfea2554f79515d8059cf55e531c012a4435814ab", 31, {kAtLeast, 15, {}}},
    {"d2000.json", 2000, "356838d5bc542ed222e5e3dac9586c4c3c5ab2e8edf08c975c3f04abfef27d4f", 21, {kAtLeast, 12, {}}},
    {"d20000.json", 20000, "1fda680a5707bec3daee5d4325f5bc800c21747b6904de5069e1f61bf20e1a5a", 5, {kAtLeast, 10, {}}},
});
constexpr Corpus kEvents = {
    "events.jsonl", 1000, "8b5346e04cdfe7e9a0a5267042d1b2434ce875d35a50ce9382a0894b3592a895", 31, {}};

Race detailRace(const Corpus& corpus, const std::string& body, SimdjsonPeer& simdjson) {
  constexpr std::size_t kOnScreen = 20;
  Race race(body.size(), corpus.items);
  const auto items = [](const PeerDetail& detail) { return detail.items.size(); };
  // The client hands the body over, so making one is none of the decoder's work.
  const auto handed = std::make_shared<std::string>();
  const auto refill = [handed, &body] { *handed = body; };
  race.add({"ours", [=] { return detailByUs(std::move(*handed)).items->value().size(); }, refill});
  race.add({"ours, QString rows", [=] { return rowsByUs(std::move(*handed)).size(); }, refill});
  race.add({"ours, QString for 20 rows",
            [=, &corpus] { return rowsOnScreenByUs(std::move(*handed), kOnScreen).size() + corpus.items - kOnScreen; },
            refill});
  race.add({"simdjson DOM alone", [&] { return simdjson.parse(body) == 3 ? corpus.items : 0; }});
  race.add({"simdjson DOM typed", [&simdjson, &body, items] { return items(simdjson.detail(body)); }});
  race.add({"nlohmann typed", [&body, items] { return items(detailByNlohmann(body)); }});
  race.add({"RapidJSON typed", [&body, items] { return items(detailByRapidjson(body)); }});
  race.add({"Boost.JSON typed", [&body, items] { return items(detailByBoost(body)); }});
  race.add({"QJsonDocument to QString", [&body] { return detailByQt(body).items.size(); }});
  return race;
}

void measureDetail(const Corpus& corpus, Report& report) {
  const std::string body = loadCorpus(corpus.file, corpus.sha256);
  checkDetailAgreement(body);
  checkRefusals(body);
  SimdjsonPeer simdjson;
  Race race = detailRace(corpus, body, simdjson);
  race.run(corpus.rounds, kTurnSeconds);

  constexpr std::array kBases = {"nlohmann typed", "simdjson DOM alone", "QJsonDocument to QString"};
  std::printf("\n%s: %zu items, %zu bytes, %d rounds\n", corpus.file, corpus.items, body.size(), corpus.rounds);
  race.print(kBases);
  const std::string in = std::string(", ") + corpus.file;
  if (corpus.items == 2000) {
    report.add("D3", "owned strings, x nlohmann" + in, race.ratio("ours", "nlohmann typed"), {kAtLeast, 10, 20});
    report.add("D3", "owned strings, x simdjson DOM alone" + in, race.ratio("ours", "simdjson DOM alone"),
               {kAtLeast, 0.5, 1.0});
  }
  report.add("D4", "rows of QString, x QJsonDocument" + in,
             race.ratio("ours, QString rows", "QJsonDocument to QString"), corpus.eagerRows);
  report.add("D4", "QString for the rows on screen, x QJsonDocument" + in,
             race.ratio("ours, QString for 20 rows", "QJsonDocument to QString"), {kAtLeast, {}, 30});
}

void measureEvents(Report& report) {
  const std::string text = loadCorpus(kEvents.file, kEvents.sha256);
  std::vector<std::string> events;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) events.push_back(line);
  checkEventAgreement(events);

  Race race(text.size(), events.size());
  const auto all = [&events](auto isDecoded) {
    return [&events, isDecoded] {
      std::size_t decoded = 0;
      for (const std::string& event : events) decoded += isDecoded(event) ? 1 : 0;
      return decoded;
    };
  };
  race.add({"ours", all([](const std::string& text) { return eventByUs(text).has_value(); })});
  race.add({"nlohmann typed", all([](const std::string& text) { return eventByNlohmann(text).sequence > 0; })});
  race.add({"QJsonDocument to QString", all([](const std::string& text) { return eventByQt(text).sequence > 0; })});
  race.run(kEvents.rounds, kTurnSeconds);

  constexpr std::array kBases = {"nlohmann typed", "QJsonDocument to QString"};
  std::printf("\n%s: %zu events, %zu bytes each, %d rounds; ours takes %.2f us an event\n", kEvents.file, events.size(),
              text.size() / events.size(), kEvents.rounds,
              static_cast<double>(text.size()) / race.rate("ours") / static_cast<double>(events.size()) * 1e6);
  race.print(kBases);
  report.add("D7", "one event, x QJsonDocument", race.ratio("ours", "QJsonDocument to QString"), {kAtLeast, 8, 15});
  report.add("D7", "one event, x nlohmann", race.ratio("ours", "nlohmann typed"), {kAtLeast, 10, 19});
}

void addOrComplain(Report& report, std::string figure, std::string what, std::expected<double, std::string> measured,
                   Bounds bounds) {
  if (!measured) std::fprintf(stderr, "json_bench: %s: %s\n", what.c_str(), measured.error().c_str());
  report.add(std::move(figure), std::move(what), measured ? std::optional(*measured) : std::nullopt, bounds);
}

void measureApart(Report& report) {
  addOrComplain(report, "D5", "instructions per byte (callgrind), d200.json",
                instructionsPerByte(corpusPath(kCorpora[0].file)), {kAtMost, 8, 3});
  for (const Corpus& corpus : {kCorpora[1], kCorpora[2]}) {
    addOrComplain(report, "D6", std::string("peak memory beside the body, x body, ") + corpus.file,
                  peakAboveBody(corpusPath(corpus.file)), {kAtMost, 1.8, 0.25});
  }
}

int runAll() {
  Report report;
  for (const Corpus& corpus : kCorpora) measureDetail(corpus, report);
  measureApart(report);
  measureEvents(report);
  return report.print() ? 0 : 1;
}

int run(std::span<char*> arguments) {
  if (arguments.size() == 1) return runAll();
  const std::string mode = arguments[1];
  const std::string what = arguments.size() == 4 ? arguments[2] : "";
  if (mode == "--once" && (what == "ours" || what == "none")) {
    decodeOnce(arguments[3], what == "none");
  } else if (mode == "--rss" && what == "ours") {
    printPeakAboveBody(arguments[3]);
  } else {
    std::fputs("usage: json_bench | --once ours|none FILE | --rss ours FILE\n", stderr);
    return 2;
  }
  return 0;
}

}  // namespace

}  // namespace varnel::bench

int main(int count, char** arguments) {
  try {
    return varnel::bench::run(std::span(arguments, static_cast<std::size_t>(count)));
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "json_bench: %s\n", fault.what());
    return 2;
  }
}
