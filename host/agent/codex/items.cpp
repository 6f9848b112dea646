// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/items.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <set>

#include "core/json/text.h"
#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {

namespace {

/// Of a tool's output, so many bytes from the beginning and from the end are passed on.
constexpr std::size_t kOutputHead = std::size_t{16} * 1024;
constexpr std::size_t kOutputTail = std::size_t{48} * 1024;

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string cutOutput(const std::string& text) {
  if (text.size() <= kOutputHead + kOutputTail) return text;
  std::size_t head = kOutputHead;
  std::size_t tail = text.size() - kOutputTail;
  while (head > 0 && continuesCharacter(text[head])) --head;
  while (tail < text.size() && continuesCharacter(text[tail])) ++tail;
  return text.substr(0, head) + "\n[… " + std::to_string(tail - head) + " bytes left out …]\n" + text.substr(tail);
}

std::string textOfParts(const JSONValue& item) {
  std::string text;
  bool isFirst = true;
  for (const auto& part : listOf(item, "content")) {
    const auto piece = textOf(part, "text");
    if (textOf(part, "type") != "text" || piece.starts_with(kFileNote)) continue;
    if (!isFirst) text += '\n';
    text += piece;
    isFirst = false;
  }
  return text;
}

std::string joined(const JSONValue::Array& texts) {
  std::string all;
  for (const auto& text : texts) {
    if (text.string() == nullptr) continue;
    if (!all.empty()) all += "\n\n";
    all += *text.string();
  }
  return all;
}

std::string fileNames(const JSONValue& item) {
  std::string names;
  for (const auto& change : listOf(item, "changes")) {
    if (!names.empty()) names += ", ";
    names += std::filesystem::path(textOf(change, "path")).filename().string();
  }
  return names;
}

/// What was run, without the shell that runs it.
std::string commandTitle(const JSONValue& item) {
  const auto& actions = listOf(item, "commandActions");
  if (actions.size() == 1 && !textOf(actions[0], "command").empty()) return textOf(actions[0], "command");
  return textOf(item, "command");
}

std::optional<std::string> titleOf(const JSONValue& item, const std::string& type) {
  std::string title;
  if (type == "commandExecution") title = commandTitle(item);
  if (type == "fileChange") title = fileNames(item);
  if (type == "mcpToolCall") title = textOf(item, "server") + "/" + textOf(item, "tool");
  if (type == "dynamicToolCall" || type == "collabAgentToolCall") title = textOf(item, "tool");
  if (type == "webSearch") title = textOf(item, "query");
  if (type == "imageView") title = textOf(item, "path");
  if (type == "subAgentActivity") title = textOf(item, "agentPath");
  if (type == "contextCompaction") title = "Context compacted";
  return title.empty() ? std::nullopt : std::optional(title);
}

/// A picture inside the text would be sent anew with every look at the conversation.
void dropInlinePictures(JSONValue::Object& detail) {
  const auto content = detail.find("content");
  if (content == detail.end() || content->second.array() == nullptr) return;
  for (auto& part : *content->second.array()) {
    const auto url = textOf(part, "url");
    if (url.starts_with("data:")) (*part.object())["url"] = url.substr(0, url.find(',') + 1);
  }
}

JSONValue::Object detailOf(const JSONValue& item, const std::string& turnId) {
  JSONValue::Object detail = objectOf(item);
  detail["turnId"] = turnId;
  const auto output = detail.find("aggregatedOutput");
  if (output != detail.end() && output->second.string() != nullptr) {
    output->second = cutOutput(*output->second.string());
  }
  dropInlinePictures(detail);
  return detail;
}

/// An item with the time that it is put in order by.
struct Placed {
  double at;
  wire::TranscriptItem item;
};

/// Puts what is laid over a turn where its time says.
void insert(std::vector<Placed>& turn, Placed extra) {
  const auto place = std::ranges::find_if(turn, [&](const Placed& one) { return one.at > extra.at; });
  turn.insert(place, std::move(extra));
}

using Known = std::map<std::string, const store::AgentMemory::Item*>;

std::vector<Placed> storedItems(const JSONValue& turn, const Known& known) {
  const auto turnId = textOf(turn, "id");
  std::vector<Placed> placed;
  double at = timeOfId(turnId).value_or(numberOf(turn, "startedAt").value_or(0));
  for (const auto& item : listOf(turn, "items")) {
    const auto id = textOf(item, "id");
    const auto remembered = known.find(id);
    const auto fromId = timeOfId(id);
    if (fromId) {
      at = *fromId;
    } else if (remembered != known.end() && remembered->second->turnId == turnId) {
      at = remembered->second->at;
    }
    placed.push_back({.at = at, .item = transcriptItem(item, turnId, at)});
  }
  return placed;
}

/// Older histories name a stored message otherwise than the live one: it would stand there twice.
bool isStoredElsewhere(const Thread& thread, const JSONValue& item) {
  const auto type = textOf(item, "type");
  return !thread.hasStableIds && (type == "userMessage" || type == "reasoning");
}

struct Turn {
  std::string id;
  std::vector<Placed> items;
};

void layLiveItems(Turn& turn, const Thread& thread, std::set<std::string>& seen) {
  for (const auto& live : thread.live) {
    if (live.turnId != turn.id || isStoredElsewhere(thread, live.item)) continue;
    if (!seen.insert(textOf(live.item, "id")).second) continue;
    insert(turn.items, {.at = live.at, .item = transcriptItem(live.item, turn.id, live.at)});
  }
}

/// Items that the agent does not store, by turn.
using Forgotten = std::multimap<std::string_view, const store::AgentMemory::Item*>;

void layForgottenItems(Turn& turn, const Thread& thread, const Forgotten& forgotten, std::set<std::string>& seen) {
  const auto [begin, end] = forgotten.equal_range(turn.id);
  for (auto entry = begin; entry != end; ++entry) {
    const auto& kept = *entry->second;
    const auto item = json::parse(kept.body.value_or("null")).value_or(JSONValue());
    // What was at work when its turn ended is gone.
    const bool isGone = textOf(item, "status") == "inProgress" && thread.turn != turn.id;
    if (isGone || !seen.insert(kept.id).second) continue;
    insert(turn.items, {.at = kept.at, .item = transcriptItem(item, turn.id, kept.at)});
  }
}

}  // namespace

wire::TranscriptItem transcriptItem(const JSONValue& item, const std::string& turnId, double at) {
  wire::TranscriptItem shown;
  shown.id = textOf(item, "id");
  shown.type = textOf(item, "type");
  shown.timestamp = at;
  if (shown.type == "userMessage") {
    shown.role = "user";
    shown.text = textOfParts(item);
  } else if (shown.type == "agentMessage" || shown.type == "plan") {
    shown.type = "agentMessage";
    shown.role = "assistant";
    shown.text = textOf(item, "text");
    shown.phase = optionalTextOf(item, "phase");
  } else if (shown.type == "reasoning") {
    shown.text = joined(listOf(item, "summary"));
  }
  shown.title = titleOf(item, shown.type);
  shown.status = optionalTextOf(item, "status");
  shown.detail = JSONValue(detailOf(item, turnId));
  return shown;
}

std::vector<wire::TranscriptItem> transcriptOf(const JSONValue::Array& turns, const Thread& thread,
                                               const std::vector<store::AgentMemory::Item>& known) {
  Known byId;
  Forgotten forgotten;
  for (const auto& item : known) {
    byId[item.id] = &item;
    if (item.body) forgotten.emplace(item.turnId, &item);
  }
  std::vector<Turn> whole;
  std::set<std::string> seen;
  bool isRunningListed = !thread.turn;
  for (const auto& turn : turns) {
    whole.push_back({.id = textOf(turn, "id"), .items = storedItems(turn, byId)});
    for (const auto& placed : whole.back().items) seen.insert(placed.item.id);
    isRunningListed = isRunningListed || whole.back().id == thread.turn;
  }
  if (!isRunningListed) whole.push_back({.id = *thread.turn, .items = {}});
  std::vector<wire::TranscriptItem> items;
  for (auto& turn : whole) {
    layLiveItems(turn, thread, seen);
    layForgottenItems(turn, thread, forgotten, seen);
    for (auto& one : turn.items) items.push_back(std::move(one.item));
  }
  return items;
}

std::optional<double> timeOfId(std::string_view id) {
  if (id.size() != 36 || id[8] != '-' || id[13] != '-' || id[14] != '7') return std::nullopt;
  const std::string digits = std::string(id.substr(0, 8)) + std::string(id.substr(9, 4));
  std::uint64_t milliseconds = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), milliseconds, 16);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return std::nullopt;
  return static_cast<double>(milliseconds) / 1000;
}

}  // namespace varnel::agent::codex
