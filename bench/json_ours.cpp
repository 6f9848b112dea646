// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/json_ours.h"

#include <boost/describe/class.hpp>

#include <algorithm>
#include <stdexcept>

#include "core/json/record_codec.h"
#include "core/wire/codec.h"
#include "core/wire/request_fields.h"
#include "core/wire/session_fields.h"

/// The codec fills a program's own kind of string as it fills ours.
template <>
struct varnel::json::Codec<QString> {
  static bool read(Reader& in, QString& out) {
    std::string_view text;
    if (!in.readText(text)) return false;
    out = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    return true;
  }
  static bool write(Writer& out, const QString& value) { return out.string(value.toStdString()); }
};

namespace varnel::bench {

namespace {

/// The members of the answer that everyone reads.
struct Answer {
  std::vector<Row> items;
  std::vector<wire::PendingRequest> pendingRequests;
  wire::SessionSummary session;
};
BOOST_DESCRIBE_STRUCT(Answer, (), (items, pendingRequests, session))

QString text(const std::string& utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::optional<QString> text(const std::optional<std::string>& utf8) {
  return utf8 ? std::optional(text(*utf8)) : std::nullopt;
}

Row rowFrom(const wire::TranscriptItem& item) {
  return {.id = text(item.id),
          .type = text(item.type),
          .timestamp = item.timestamp,
          .role = text(item.role),
          .phase = text(item.phase),
          .title = text(item.title),
          .text = text(item.text),
          .detail = item.detail,
          .status = text(item.status)};
}

template <class T>
void require(const wire::SessionDetail::Member<T>& member) {
  if (!member) throw std::runtime_error("the answer lacks a member");
  if (!*member) throw std::runtime_error(member->error().message());
}

}  // namespace

BOOST_DESCRIBE_STRUCT(Row, (), (id, type, timestamp, role, phase, title, text, detail, status))

wire::SessionDetail detailByUs(std::string body) {
  auto detail = wire::decodeSessionDetail(std::move(body));
  if (!detail) throw std::runtime_error(detail.error().message());
  require(detail->items);
  require(detail->pendingRequests);
  require(detail->session);
  return *std::move(detail);
}

std::vector<Row> rowsByUs(std::string body) {
  Answer answer;
  json::Reader in(std::make_shared<const std::string>(std::move(body)));
  if (!json::Codec<Answer>::read(in, answer) || !in.finish()) throw std::runtime_error(in.error().message());
  return std::move(answer.items);
}

std::vector<Row> rowsOnScreenByUs(std::string body, std::size_t most) {
  const wire::SessionDetail detail = detailByUs(std::move(body));
  const auto& items = **detail.items;
  std::vector<Row> rows;
  for (std::size_t i = items.size() - std::min(most, items.size()); i < items.size(); ++i) {
    rows.push_back(rowFrom(items[i]));
  }
  return rows;
}

std::expected<wire::LiveEvent, json::DecodeError> eventByUs(std::string_view text) {
  return wire::decode<wire::LiveEvent>(text);
}

}  // namespace varnel::bench
