// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json/value.h"
#include "core/wire/request.h"
#include "core/wire/session.h"

/// What our decoder is measured beside. Every decoder here fills the same records as strictly as ours does and throws
/// on what does not fit; each leaves its text as it was.
namespace varnel::bench {

/// `wire::TranscriptItem` with its detail unfolded, as these libraries give it.
struct PeerItem {
  std::string id;
  std::string type;
  double timestamp = 0;
  std::optional<std::string> role;
  std::optional<std::string> phase;
  std::optional<std::string> title;
  std::optional<std::string> text;
  std::optional<json::JSONValue> detail;
  std::optional<std::string> status;

  bool operator==(const PeerItem&) const = default;
};

struct PeerDetail {
  std::vector<PeerItem> items;
  std::vector<wire::PendingRequest> pendingRequests;
  wire::SessionSummary session;

  bool operator==(const PeerDetail&) const = default;
};

/// The same for a program that is all Qt.
struct QtItem {
  QString id;
  QString type;
  double timestamp = 0;
  std::optional<QString> role;
  std::optional<QString> phase;
  std::optional<QString> title;
  std::optional<QString> text;
  std::optional<QJsonValue> detail;
  std::optional<QString> status;

  bool operator==(const QtItem&) const = default;
};

/// The items alone; the rest of an answer is under 0.3 % of the smallest one measured.
struct QtDetail {
  std::vector<QtItem> items;
};

/// `wire::LiveEvent` with its payload unfolded.
struct PeerEvent {
  std::int64_t sequence = 0;
  std::string type;
  double timestamp = 0;
  std::optional<std::string> sessionId;
  std::optional<std::string> turnId;
  json::JSONValue::Object payload;

  bool operator==(const PeerEvent&) const = default;
};

struct QtEvent {
  std::int64_t sequence = 0;
  QString type;
  double timestamp = 0;
  std::optional<QString> sessionId;
  std::optional<QString> turnId;
  QJsonObject payload;

  bool operator==(const QtEvent&) const = default;
};

PeerDetail detailByNlohmann(std::string_view text);
PeerEvent eventByNlohmann(std::string_view text);
PeerDetail detailByRapidjson(std::string_view text);
PeerDetail detailByBoost(std::string_view text);
QtDetail detailByQt(std::string_view text);
QtEvent eventByQt(std::string_view text);

/// simdjson's document tree: `parse` alone is the anchor, with the parser's buffers reused from call to call.
class SimdjsonPeer {
 public:
  SimdjsonPeer();
  ~SimdjsonPeer();
  SimdjsonPeer(SimdjsonPeer&&) = delete;

  /// How many members the document has.
  std::size_t parse(std::string_view text);
  PeerDetail detail(std::string_view text);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace varnel::bench
