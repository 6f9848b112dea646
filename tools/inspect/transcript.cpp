// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/transcript.h"

#include <boost/describe/class.hpp>
#include <set>

#include "core/transcript/display_rows.h"
#include "core/transcript/reconcile.h"
#include "core/wire/transcript_fields.h"
#include "tools/inspect/encoded.h"

namespace varnel::inspect {

namespace {

using Items = std::vector<wire::TranscriptItem>;

struct Row {
  std::string id;
  std::string kind;
  std::vector<std::string> items;
};
BOOST_DESCRIBE_STRUCT(Row, (), (id, kind, items))

struct UnreadQuestion {
  Items items;
  std::optional<std::string> after;
  std::optional<std::vector<std::string>> knownItemIDs;
};
BOOST_DESCRIBE_STRUCT(UnreadQuestion, (), (items, after, knownItemIDs))

struct ReconcileQuestion {
  Items serverItems;
  Items optimisticItems;
};
BOOST_DESCRIBE_STRUCT(ReconcileQuestion, (), (serverItems, optimisticItems))

struct ReconcileAnswer {
  std::vector<std::string> items;
  std::vector<std::string> remainingOptimistic;
};
BOOST_DESCRIBE_STRUCT(ReconcileAnswer, (), (items, remainingOptimistic))

std::vector<std::string> idsOf(const Items& items) {
  std::vector<std::string> ids;
  for (const auto& item : items) ids.push_back(item.id);
  return ids;
}

Outcome rows(std::string_view input) {
  auto items = json::decodeText<Items>(input);
  if (!items) return std::unexpected(items.error().message());
  std::vector<Row> result;
  for (const auto& row : transcript::transcriptDisplayRows(*std::move(items))) {
    const bool message = row.kind == transcript::TranscriptDisplayRow::Kind::Message;
    result.push_back({.id = row.id(), .kind = message ? "message" : "tools", .items = idsOf(row.items)});
  }
  return encoded(result);
}

Outcome unread(std::string_view input) {
  using Ids = std::set<std::string, std::less<>>;
  const auto question = json::decodeText<UnreadQuestion>(input);
  if (!question) return std::unexpected(question.error().message());
  const auto& known = question->knownItemIDs;
  const auto found = known ? transcript::firstUnreadReplyID(question->items, Ids(known->begin(), known->end()))
                           : transcript::firstUnreadReplyID(question->items, question->after);
  return found ? encoded(*found) : Outcome("null");
}

Outcome reconcile(std::string_view input) {
  auto question = json::decodeText<ReconcileQuestion>(input);
  if (!question) return std::unexpected(question.error().message());
  const auto merged =
      transcript::reconcileTranscript(std::move(question->serverItems), std::move(question->optimisticItems));
  return encoded(
      ReconcileAnswer{.items = idsOf(merged.items), .remainingOptimistic = idsOf(merged.remainingOptimistic)});
}

}  // namespace

std::optional<Converter> rowsConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return rows;
}

std::optional<Converter> unreadConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return unread;
}

std::optional<Converter> reconcileConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return reconcile;
}

}  // namespace varnel::inspect
