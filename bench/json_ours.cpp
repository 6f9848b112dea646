// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/json_ours.h"

#include <algorithm>
#include <stdexcept>

#include "core/wire/codec.h"

namespace varnel::bench {

namespace {

QString text(const std::string& utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

std::optional<QString> text(const std::optional<std::string>& utf8) {
  return utf8 ? std::optional(text(*utf8)) : std::nullopt;
}

Row rowFrom(wire::TranscriptItem& item) {
  return {.id = text(item.id),
          .type = text(item.type),
          .timestamp = item.timestamp,
          .role = text(item.role),
          .phase = text(item.phase),
          .title = text(item.title),
          .text = text(item.text),
          .detail = std::move(item.detail),
          .status = text(item.status)};
}

template <class T>
void require(const wire::SessionDetail::Member<T>& member) {
  if (!member) throw std::runtime_error("the answer lacks a member");
  if (!*member) throw std::runtime_error(member->error().message());
}

}  // namespace

wire::SessionDetail detailByUs(std::string body) {
  auto detail = wire::decodeSessionDetail(std::move(body));
  if (!detail) throw std::runtime_error(detail.error().message());
  require(detail->items);
  require(detail->pendingRequests);
  require(detail->session);
  return *std::move(detail);
}

std::vector<Row> rowsByUs(std::string body, std::size_t most) {
  wire::SessionDetail detail = detailByUs(std::move(body));
  auto& items = **detail.items;
  std::vector<Row> rows;
  rows.reserve(std::min(most, items.size()));
  for (std::size_t i = items.size() - std::min(most, items.size()); i < items.size(); ++i) {
    rows.push_back(rowFrom(items[i]));
  }
  return rows;
}

std::expected<wire::LiveEvent, json::DecodeError> eventByUs(std::string_view text) {
  return wire::decode<wire::LiveEvent>(text);
}

}  // namespace varnel::bench
