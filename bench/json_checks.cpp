// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/json_checks.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <array>
#include <stdexcept>

#include "bench/json_ours.h"
#include "bench/json_peers.h"
#include "core/json/text.h"

namespace varnel::bench {

namespace {

void require(bool holds, const std::string& fault) {
  if (!holds) throw std::runtime_error(fault);
}

PeerDetail unfolded(const wire::SessionDetail& detail) {
  PeerDetail result{.items = {}, .pendingRequests = **detail.pendingRequests, .session = **detail.session};
  for (const wire::TranscriptItem& item : **detail.items) {
    result.items.push_back({.id = item.id,
                            .type = item.type,
                            .timestamp = item.timestamp,
                            .role = item.role,
                            .phase = item.phase,
                            .title = item.title,
                            .text = item.text,
                            .detail = item.detail ? std::optional(item.detail->value()) : std::nullopt,
                            .status = item.status});
  }
  return result;
}

QJsonValue unfolded(const json::RawValue& value) {
  // QJsonDocument takes objects and arrays alone.
  const std::string wrapped = "[" + std::string(value.text()) + "]";
  return QJsonDocument::fromJson(QByteArray::fromStdString(wrapped)).array().first();
}

bool same(const Row& row, const QtItem& item) {
  return row.id == item.id && row.type == item.type && row.timestamp == item.timestamp && row.role == item.role &&
         row.phase == item.phase && row.title == item.title && row.text == item.text && row.status == item.status &&
         row.detail.has_value() == item.detail.has_value() && (!row.detail || unfolded(*row.detail) == *item.detail);
}

bool same(const std::vector<Row>& rows, const std::vector<QtItem>& items) {
  if (rows.size() != items.size()) return false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!same(rows[i], items[i])) return false;
  }
  return true;
}

bool same(const wire::LiveEvent& ours, const PeerEvent& peer) {
  return PeerEvent{.sequence = ours.sequence,
                   .type = ours.type,
                   .timestamp = ours.timestamp,
                   .sessionId = ours.sessionId,
                   .turnId = ours.turnId,
                   .payload = ours.payload.value()} == peer;
}

bool same(const wire::LiveEvent& ours, const QtEvent& qt) {
  const auto payload = QByteArray::fromStdString(json::write(ours.payload.value()).value());
  return ours.sequence == qt.sequence && ours.type == qt.type.toStdString() && ours.timestamp == qt.timestamp &&
         ours.sessionId == qt.sessionId.transform(&QString::toStdString) &&
         ours.turnId == qt.turnId.transform(&QString::toStdString) &&
         QJsonDocument::fromJson(payload).object() == qt.payload;
}

/// The text with `with` in place of the last `what`.
std::string changed(std::string text, std::string_view what, std::string_view with) {
  const auto at = text.rfind(what);
  require(at != std::string::npos, "the corpus holds no " + std::string(what));
  return text.replace(at, what.size(), with);
}

bool refused(const std::string& body) {
  try {
    detailByUs(body);
  } catch (const std::runtime_error&) {
    return true;
  }
  return false;
}

}  // namespace

void checkDetailAgreement(const std::string& body) {
  const PeerDetail ours = unfolded(detailByUs(body));
  require(!ours.items.empty(), "the corpus holds no items");
  require(ours == detailByNlohmann(body), "nlohmann decodes something else");
  require(ours == detailByRapidjson(body), "RapidJSON decodes something else");
  require(ours == detailByBoost(body), "Boost.JSON decodes something else");
  require(ours == SimdjsonPeer().detail(body), "simdjson decodes something else");
  const auto qtItems = detailByQt(body).items;
  require(same(rowsByUs(body), qtItems), "QJsonDocument decodes something else");

  const std::string inDetail = changed(body, R"("aggregatedOutput":")", R"("aggregatedOutput":"x)");
  require(unfolded(detailByUs(inDetail)) != ours, "the comparison overlooks a changed detail");
  require(!same(rowsByUs(inDetail), qtItems), "the comparison with Qt overlooks a changed detail");
  const std::string inTime = changed(body, R"("timestamp":1)", R"("timestamp":2)");
  require(unfolded(detailByUs(inTime)) != ours, "the comparison overlooks a changed time");
  require(!same(rowsByUs(inTime), qtItems), "the comparison with Qt overlooks a changed time");
}

void checkEventAgreement(const std::vector<std::string>& events) {
  require(!events.empty(), "the corpus holds no events");
  for (const std::string& event : events) {
    const wire::LiveEvent ours = eventByUs(event).value();
    require(same(ours, eventByNlohmann(event)), "nlohmann decodes another event");
    require(same(ours, eventByQt(event)), "QJsonDocument decodes another event");
  }
  const wire::LiveEvent other = eventByUs(changed(events.front(), R"("payload":{)", R"("payload":{"x":1,)")).value();
  require(!same(other, eventByNlohmann(events.front())), "the comparison overlooks a changed event");
  require(!same(other, eventByQt(events.front())), "the comparison with Qt overlooks a changed event");
}

void checkRefusals(const std::string& body) {
  struct Fault {
    std::string_view what, with;
  };
  using namespace std::string_view_literals;
  constexpr std::array kFaults = std::to_array<Fault>({
      {R"("durationMs":)", R"("durationMs":0)"},                // a leading zero
      {R"("durationMs":)", R"("durationMs":1e999)"},            // a number beyond every double
      {R"("exitCode":)", R"("exitCode")"},                      // no colon
      {R"("commandActions":[)", R"("commandActions":[,)"},      // an empty place
      {R"("source":"agent")", R"("source":nul)"},               // half a word
      {R"("cwd":"/home)", "\"cwd\":\"/\nhome"},                 // a control character
      {R"("cwd":"/home)", R"("cwd":"\q)"},                      // no such escape
      {R"("cwd":"/home)", R"("cwd":"\ud83d home)"},             // half a surrogate pair
      {R"("cwd":"/home)", "\"cwd\":\"\xC3\x28"},                // not UTF-8
      {R"("cwd":"/home)", "\"cwd\":\"\xED\xA0\x80"},            // a surrogate in UTF-8
      {R"("aggregatedOutput":")", R"("aggregatedOutput":""")"}  // a string that ends early
  });
  require(!refused(body), "the corpus itself is refused");
  for (const auto& [what, with] : kFaults) {
    require(refused(changed(body, what, with)), "our decoder accepts " + std::string(with));
  }
}

}  // namespace varnel::bench
