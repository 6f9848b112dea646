// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <array>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "core/transcript/display_rows.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// Each byte is an item: its type, its role, and whether it shares its id with others.
std::vector<wire::TranscriptItem> itemsOf(const std::uint8_t* data, std::size_t size) {
  static const std::array<std::string, 4> kTypes = {"agentMessage", "reasoning", "plan", "commandExecution"};
  static const std::array<std::optional<std::string>, 4> kRoles = {std::nullopt, "user", "assistant", "User"};
  std::vector<wire::TranscriptItem> items;
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned byte = data[i];
    wire::TranscriptItem item{.id = (byte & 16U) != 0 ? "same" : std::to_string(i), .type = kTypes.at(byte & 3U)};
    item.role = kRoles.at((byte >> 2U) & 3U);
    items.push_back(std::move(item));
  }
  return items;
}

bool isMessage(const wire::TranscriptItem& item) {
  return item.role == "user" || item.role == "assistant";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto items = itemsOf(data, size);
  std::vector<wire::TranscriptItem> kept;
  for (const auto& item : items) {
    if (item.type != "reasoning" && item.type != "plan") kept.push_back(item);
  }
  // Order and number are kept, messages stand alone, runs are as long as can be.
  std::size_t next = 0;
  bool afterRun = false;
  for (const auto& row : transcript::transcriptDisplayRows(items)) {
    const bool run = row.kind == transcript::TranscriptDisplayRow::Kind::Tools;
    require(!row.items.empty() && (run ? !afterRun : row.items.size() == 1));
    require(row.id() == (run ? "tools-" : "") + row.items.front().id);
    for (const auto& item : row.items) require(next < kept.size() && item == kept[next++] && isMessage(item) != run);
    afterRun = run;
  }
  require(next == kept.size());

  std::set<std::string, std::less<>> known;
  while (const auto unread = transcript::firstUnreadReplyID(items, known)) require(known.insert(*unread).second);
  for (const auto& item : items) require(item.role != "assistant" || known.contains(item.id));
  const auto after = transcript::firstUnreadReplyID(items, items.empty() ? std::optional<std::string>() : items[0].id);
  require(!after || known.contains(*after));
  return 0;
}
