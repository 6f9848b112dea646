// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/script.h"

#include <algorithm>

namespace varnel::agent::demo {

namespace {

void fillValue(json::JSONValue& value, const Words& words);

void fillValue(json::JSONValue::Object& object, const Words& words) {
  for (auto& [key, member] : object) fillValue(member, words);
}

void fillValue(json::JSONValue& value, const Words& words) {
  if (const std::string* text = value.string()) {
    std::string filled = *text;
    fill(filled, words);
    value = std::move(filled);
  } else if (auto* object = value.object()) {
    fillValue(*object, words);
  } else if (auto* array = value.array()) {
    for (auto& element : *array) fillValue(element, words);
  }
}

struct Filler {
  const Words& words;

  void operator()(Say& say) const { fill(say.text, words); }
  void operator()(Think& think) const { fill(think.summary, words); }
  void operator()(Hear& hear) const { fill(hear.text, words); }
  void operator()(Fail& fail) const { fill(fail.message, words); }
  void operator()(Pause&) const {}
  void operator()(ToolRun& run) const {
    fill(run.title, words);
    fillValue(run.before, words);
    fillValue(run.after, words);
  }
  void operator()(MovePlan& plan) const {
    if (plan.explanation) fill(*plan.explanation, words);
    for (auto& step : plan.steps) fill(step.step, words);
  }
  void operator()(Ask& ask) const {
    fillValue(ask.params, words);
    if (ask.subject) (*this)(*ask.subject);
    fill(ask.accepted, words);
    fill(ask.declined, words);
  }
};

struct Timer {
  double operator()(const Say& say) const {
    const std::size_t pieces = std::clamp<std::size_t>(say.text.size() / kLeastPieceBytes, 1, kMostPieces);
    return static_cast<double>(pieces) * kPieceSeconds + kStepSeconds;
  }
  double operator()(const ToolRun& run) const { return run.seconds + kStepSeconds; }
  double operator()(const Pause& pause) const { return pause.seconds; }
  double operator()(const Ask& ask) const {
    return (ask.subject ? (*this)(*ask.subject) : 0.0) + playingTime(ask.accepted);
  }
  template <class Other>
  double operator()(const Other&) const {
    return kStepSeconds;
  }
};

bool continuesCodePoint(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

}  // namespace

void fill(std::string& text, const Words& words) {
  std::size_t at = 0;
  while ((at = text.find("{{", at)) != std::string::npos) {
    const std::size_t end = text.find("}}", at);
    if (end == std::string::npos) return;
    const auto word = words.find(std::string_view(text).substr(at + 2, end - at - 2));
    if (word == words.end()) {
      at = end + 2;
      continue;
    }
    text.replace(at, end + 2 - at, word->second);
    at += word->second.size();
  }
}

void fill(Script& script, const Words& words) {
  for (Step& step : script) std::visit(Filler{words}, step.what);
}

double playingTime(const Script& script) {
  double seconds = 0;
  for (const Step& step : script) seconds += std::visit(Timer{}, step.what);
  return seconds;
}

std::size_t pieceEnd(const std::string& text, std::size_t from) {
  const std::size_t size = std::max(kLeastPieceBytes, text.size() / kMostPieces + 1);
  if (text.size() - from <= size) return text.size();
  std::size_t end = from + size;
  const std::size_t space = text.find_last_of(" \n", end);
  if (space != std::string::npos && space > from + size / 2) return space + 1;
  while (end < text.size() && continuesCodePoint(text[end])) ++end;
  return end;
}

}  // namespace varnel::agent::demo
