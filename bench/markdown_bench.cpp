// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// How quickly replies become blocks, one call a reply, beside what others would use. The peers know other rules, and
// most of them read what stands inside blocks too: the ratios are marks to hold on to, no contest. Then how slow the
// slowest text that we know of is.
#include <QtGui/QGuiApplication>

#include <array>
#include <cstdio>
#include <cstring>
#include <exception>
#include <span>

#include "bench/corpus_file.h"
#include "bench/markdown_peers.h"
#include "bench/process.h"
#include "bench/race.h"
#include "bench/report.h"
#include "core/markdown/block_views.h"
#include "core/markdown/inline.h"
#include "core/markdown/parse_blocks.h"

namespace varnel::bench {

namespace {

constexpr auto kAtLeast = Bounds::Sense::AtLeast;
constexpr auto kAtMost = Bounds::Sense::AtMost;
constexpr double kTurnSeconds = 0.02;

using Replies = std::vector<std::string_view>;

/// Each ends in a NUL.
Replies split(std::string_view corpus) {
  Replies replies;
  while (!corpus.empty()) {
    const std::size_t end = corpus.find('\0');
    replies.push_back(corpus.substr(0, end));
    corpus.remove_prefix(end + 1);
  }
  return replies;
}

std::size_t linesOf(std::string_view text) {
  std::size_t lines = 1;
  const char* at = text.data();
  const char* end = at + text.size();
  while ((at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) != nullptr) {
    ++lines;
    ++at;
  }
  return lines;
}

void addRunner(Race& race, const Replies& replies, const char* name, auto parse) {
  race.add({name, [&replies, parse] {
              for (const std::string_view reply : replies) parse(reply);
              return replies.size();
            }});
}

constexpr auto kSmallSum = "621294bb14ad96a91605cd1c64999d49df40a46f40233d63cc66bdfba39a4a0f";
constexpr auto kOurs = "ours";
constexpr auto kOwned = "ours, owning its texts";
constexpr auto kFloor = "looking for line ends";
constexpr auto kMd4c = "md4c, GitHub";
constexpr auto kQt = "QTextDocument";

Race peerRace(std::size_t bytes, const Replies& replies) {
  const Cmark cmark("libcmark.so");
  const Cmark cmarkGfm("libcmark-gfm.so");
  const auto views = std::make_shared<markdown::BlockViews>();
  Race race(bytes, replies.size());
  addRunner(race, replies, kFloor, linesOf);
  addRunner(race, replies, kOurs, [views](std::string_view text) { views->parse(text); });
  addRunner(race, replies, kOwned, markdown::parseTranscriptMarkdown);
  addRunner(race, replies, "md4c, CommonMark", [](std::string_view text) { parseWithMd4c(text, false); });
  addRunner(race, replies, kMd4c, [](std::string_view text) { parseWithMd4c(text, true); });
  addRunner(race, replies, "cmark, blocks", [cmark](std::string_view text) { cmark.parseBlocks(text); });
  addRunner(race, replies, "cmark", [cmark](std::string_view text) { cmark.parse(text); });
  addRunner(race, replies, "cmark-gfm, blocks", [cmarkGfm](std::string_view text) { cmarkGfm.parseBlocks(text); });
  addRunner(race, replies, "cmark-gfm", [cmarkGfm](std::string_view text) { cmarkGfm.parse(text); });
  return race;
}

void measurePeers(Report& report) {
  constexpr int kRounds = 15;
  constexpr int kSlowRounds = 3;
  const std::string corpus = loadCorpus("md5.md", "621294bb14ad96a91605cd1c64999d49df40a46f40233d63cc66bdfba39a4a0f");
  const Replies replies = split(corpus);
  Race race = peerRace(corpus.size(), replies);
  race.run(kRounds, kTurnSeconds);
  std::printf("\nmd5.md: %zu replies, %zu bytes, %d rounds\n", replies.size(), corpus.size(), kRounds);
  constexpr std::array kBases = {kMd4c, kFloor};
  race.print(kBases);
  // Held to the views, from which these are made.
  report.add("M2", "blocks that own their texts, x md4c GitHub", race.ratio(kOwned, kMd4c), {kAtLeast, {}, 4.5});
  report.add("M1", "blocks as views, x md4c GitHub", race.ratio(kOurs, kMd4c), {kAtLeast, 10, 14});
  report.add("M1", "blocks as views, x looking for line ends", race.ratio(kOurs, kFloor), {kAtLeast, 0.45, 0.6});

  markdown::BlockViews views;
  Race slow(corpus.size(), replies.size());
  addRunner(slow, replies, kOurs, [&views](std::string_view text) { views.parse(text); });
  addRunner(slow, replies, kQt, parseWithQt);
  addRunner(slow, replies, "ours, inline of the whole", markdown::inlineMarkdown);
  slow.run(kSlowRounds, kTurnSeconds);
  constexpr std::array kSlowBases = {kQt};
  slow.print(kSlowBases);
  report.add("M4", "blocks, x QTextDocument::setMarkdown", slow.ratio(kOurs, kQt), {kAtLeast, 300, 450});

  const auto rates = ratesInNode(corpusPath("md5.md"), kRounds);
  if (!rates) {
    std::printf("\nSKIPPED: marked and markdown-it were not measured: %s\n", rates.error().c_str());
    return;
  }
  for (const auto& [name, rate] : *rates) std::printf("  %-28s %8.1f\n", name.c_str(), rate / 1e6);
  report.add("M4", "blocks, x marked's", race.rate(kOurs) / rates->at("marked, blocks"), {kAtLeast, 40, 55});
}

void measureGrowth(Report& report) {
  constexpr int kRounds = 7;
  constexpr std::size_t kTimes = 10;
  const std::string small = loadCorpus("md5.md", kSmallSum);
  const std::string large = loadCorpus("md50.md", "1e49233b04b6bbc2cc6170d1324d2ae9aeb90c6c7f63e941ddb77e7c1843bb13");
  const Replies smallReplies = split(small);
  const Replies largeReplies = split(large);
  markdown::BlockViews views;
  const auto parseAll = [&views](const Replies& replies) {
    for (const std::string_view reply : replies) views.parse(reply);
  };
  Race race(large.size(), 1);
  race.add({"small", [&] {
              for (std::size_t i = 0; i < kTimes; ++i) parseAll(smallReplies);
              return std::size_t{1};
            }});
  race.add({"large", [&] {
              parseAll(largeReplies);
              return std::size_t{1};
            }});
  race.run(kRounds, 0);
  const double sizes = static_cast<double>(large.size()) / static_cast<double>(kTimes * small.size());
  report.add("M5", "rate on 50 MB over the rate on 5 MB", race.ratio("large", "small") * sizes, {kAtLeast, 0.8, 0.9});
}

struct Hostile {
  const char* name;
  std::string_view unit;
  std::size_t megabytes = 5;
};

constexpr auto kHostile = std::to_array<Hostile>({
    {"lines of a letter", "a\n"},
    {"letters between empty lines", "a\n\n"},
    {"bullets", "- a\n"},
    {"numbers", "1. a\n"},
    {"lists of one item", "- a\n1. a\n"},
    {"quotes", ">\n"},
    {"headings", "# a\n"},
    {"rules", "---\n"},
    {"pipes", "|\n"},
    {"tables", "|a\n---\n"},
    {"rows of a table", "a|b\n---|---\n"},
    {"empty lines", "\n"},
    {"carriage returns", "\r"},
    {"fences in turn", "```\n~~~\n"},
    {"near separators",
     "a|b\n---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|---|-\n"},
    {"nearly a rule", "- - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - a\n"},
    {"one line of rule", "- "},
    {"one line of heading", "#"},
    {"one line of backticks", "`"},
    {"one line of quotes", ">"},
    {"one line of brackets", "["},
    {"one line of pipes", "|"},
    {"one line of stars", "*a "},
    {"one line of digits", "1"},
    {"one line of letters", "a", 50},
    {"spaces", " "},
    {"wide spaces", "\u3000"},
    {"combining marks", "-\u0301"},
    {"lines of marks", "-\u0301\n"},
    {"bytes that are no text", "\xff\n"},
});

void measureHostile(Report& report) {
  constexpr int kRounds = 3;
  constexpr double kMustLine = 40e-9;
  constexpr double kMustByte = 1.2e-9;
  constexpr double kGoalLine = 20e-9;
  constexpr double kGoalByte = 0.7e-9;
  double worstMust = 0;
  double worstGoal = 0;
  std::printf("\n  %-28s %10s %10s %14s\n", "hostile text", "ns a line", "ns a byte", "of what it may");
  for (const Hostile& hostile : kHostile) {
    std::string text;
    while (text.size() < hostile.megabytes * 1'000'000) text += hostile.unit;
    const std::size_t lines = linesOf(text) + (hostile.unit == "\r" ? text.size() : 0);
    Race race(text.size(), 1);
    const Replies replies = {text};
    markdown::BlockViews views;
    addRunner(race, replies, kOurs, [&views](std::string_view source) { views.parse(source); });
    race.run(kRounds, 0);
    const auto bytes = static_cast<double>(text.size());
    const auto lineCount = static_cast<double>(lines);
    const double seconds = bytes / race.rate(kOurs);
    const double must = seconds / (lineCount * kMustLine + bytes * kMustByte);
    worstMust = std::max(worstMust, must);
    worstGoal = std::max(worstGoal, seconds / (lineCount * kGoalLine + bytes * kGoalByte));
    std::printf("  %-28s %10.1f %10.2f %14.2f\n", hostile.name, seconds / lineCount * 1e9, seconds / bytes * 1e9, must);
  }
  report.add("M5", "slowest hostile text, of 40 ns a line and 1.2 ns a byte", worstMust, {kAtMost, 1, {}});
  report.add("M5", "slowest hostile text, of 20 ns a line and 0.7 ns a byte", worstGoal, {kAtMost, {}, 1});
}

void measureInstructions(Report& report) {
  const auto measured = instructionsPerByte(corpusPath("md5.md"));
  if (!measured) std::fprintf(stderr, "markdown_bench: %s\n", measured.error().c_str());
  report.add("M3", "instructions per byte (callgrind), blocks as views",
             measured ? std::optional(*measured) : std::nullopt, {kAtMost, 3, 2});
}

void parseOnce(const std::string& file, bool onlyRead) {
  const std::string corpus = readFile(file);
  const Replies replies = split(corpus);
  if (onlyRead) return;
  markdown::BlockViews views;
  for (const std::string_view reply : replies) views.parse(reply);
}

int runAll() {
  Report report;
  measurePeers(report);
  measureInstructions(report);
  measureGrowth(report);
  measureHostile(report);
  return report.print() ? 0 : 1;
}

int run(std::span<char*> arguments) {
  if (arguments.size() == 1) return runAll();
  const std::string what = arguments.size() == 4 ? arguments[2] : "";
  if (std::string_view(arguments[1]) != "--once" || (what != "ours" && what != "none")) {
    std::fputs("usage: markdown_bench | --once ours|none FILE\n", stderr);
    return 2;
  }
  parseOnce(arguments[3], what == "none");
  return 0;
}

}  // namespace

}  // namespace varnel::bench

int main(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "C.UTF-8");
  try {
    const std::span words(arguments, static_cast<std::size_t>(count));
    if (count > 1) return varnel::bench::run(words);
    const QGuiApplication application(count, arguments);
    return varnel::bench::run(words);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "markdown_bench: %s\n", fault.what());
    return 2;
  }
}
