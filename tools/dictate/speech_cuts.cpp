// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/dictate/speech_cuts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>

namespace varnel::dictate {
namespace {

// Counted in frames of 20 ms.
constexpr std::size_t kFramesInSecond = 50;
constexpr std::size_t kShortest = 8 * kFramesInSecond;
constexpr std::size_t kPause = 20;
constexpr std::size_t kMargin = 25;
constexpr std::size_t kLookForQuiet = 18 * kFramesInSecond;
constexpr std::size_t kLongest = 25 * kFramesInSecond;
/// Quiet is what is below this level, or below this share of the loudest frame.
constexpr double kQuietLevel = 60;
constexpr double kQuietShare = 0.08;

double quietBelow(double loudest) {
  return std::max(kQuietLevel, kQuietShare * loudest);
}

double levelOf(std::span<const std::int16_t> frame) {
  double sum = 0;
  for (const std::int16_t sample : frame) sum += static_cast<double>(sample) * sample;
  return std::sqrt(sum / static_cast<double>(frame.size()));
}

}  // namespace

std::size_t cutAfter(std::span<const std::int16_t> samples, int rate) {
  const std::size_t frame = static_cast<std::size_t>(rate) / kFramesInSecond;
  if (frame == 0) return 0;
  double loudest = 0;
  double quietest = std::numeric_limits<double>::max();
  std::size_t quietFrames = 0;
  std::size_t best = 0;
  for (std::size_t i = 0; (i + 1) * frame <= samples.size(); ++i) {
    const double level = levelOf(samples.subspan(i * frame, frame));
    loudest = std::max(loudest, level);
    quietFrames = level < quietBelow(loudest) ? quietFrames + 1 : 0;
    if (i >= kShortest && quietFrames >= kPause) return (i + 1 - quietFrames / 2) * frame;
    if (i >= kLookForQuiet && level < quietest) {
      quietest = level;
      best = i;
    }
    if (i >= kLongest) return (best + 1) * frame;
  }
  return 0;
}

std::vector<std::int16_t> withEvenMargins(std::span<const std::int16_t> samples, int rate) {
  const std::size_t frame = static_cast<std::size_t>(rate) / kFramesInSecond;
  std::vector<double> levels;
  for (std::size_t at = 0; frame != 0 && at + frame <= samples.size(); at += frame) {
    levels.push_back(levelOf(samples.subspan(at, frame)));
  }
  const double quiet = levels.empty() ? 0 : quietBelow(std::ranges::max(levels));
  const auto isLoud = [quiet](double level) { return level >= quiet; };
  const auto first = std::ranges::find_if(levels, isLoud);
  if (first == levels.end()) return {samples.begin(), samples.end()};
  const auto afterLast = std::ranges::find_if(levels | std::views::reverse, isLoud).base();

  const std::size_t margin = kMargin * frame;
  const std::size_t begin = static_cast<std::size_t>(first - levels.begin()) * frame;
  const std::size_t end = static_cast<std::size_t>(afterLast - levels.begin()) * frame;
  const std::size_t before = std::min(begin, margin);
  const std::size_t after = std::min(samples.size() - end, margin);
  std::vector<std::int16_t> speech(margin - before, 0);
  const auto kept = samples.subspan(begin - before, before + (end - begin) + after);
  speech.insert(speech.end(), kept.begin(), kept.end());
  speech.resize(speech.size() + margin - after, 0);
  return speech;
}

}  // namespace varnel::dictate
