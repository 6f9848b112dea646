// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <type_traits>

#include "app/client/async.h"
#include "app/client/body.h"
#include "app/client/client_error.h"
#include "app/client/http_exchange.h"
#include "core/json/raw_value.h"
#include "core/live/request.h"
#include "core/wire/codec.h"
#include "core/wire/session_detail.h"

namespace varnel::client {

/// What a call takes along, so that it never looks back at the client that started it.
struct CallContext {
  ExchangeLimits limits;
  std::int64_t decodeHereLimit;  ///< bytes
  std::stop_token clientGone;
  std::shared_ptr<std::string> contract;  ///< takes what the answers say of the bridge's version
};

/// One request as it goes out, or why it cannot be built; and what its failure says when the bridge gives no text.
struct OutgoingRequest {
  std::expected<live::HttpRequest, live::RequestError> request;
  QByteArray file;  ///< the body of an upload, whose request has none
  std::string fallbackMessage = "Bridge error";
};

ClientError toClientError(live::RequestError error);

/// The body of a success; any other status is the bridge's own failure.
Task<Result<Body>> fetch(CallContext context, OutgoingRequest outgoing, std::stop_token stop);

// Some answers keep the text.
template <class Value>
std::expected<Value, json::DecodeError> readAnswer(std::string text) {  // NOLINT(performance-unnecessary-value-param)
  if constexpr (std::is_same_v<Value, json::RawValue>) {
    return json::RawValue::parse(std::move(text));
  } else if constexpr (std::is_same_v<Value, wire::SessionDetail>) {
    return wire::decodeSessionDetail(std::move(text));
  } else {
    return wire::decode<Value>(text);
  }
}

/// What is wrong with the bytes of a body.
ClientError toClientError(Body::Failure failure);

template <class Value>
Result<Value> readBody(Body body) {
  auto text = std::move(body).text();
  if (!text) return std::unexpected(toClientError(text.error()));
  auto value = readAnswer<Value>(*std::move(text));
  if (!value) return std::unexpected(ClientError(std::move(value).error()));
  return Result<Value>(std::in_place, *std::move(value));
}

/// Decodes here when the body is small, else on a worker.
template <class Value>
Task<Result<Value>> decodeBody(Body body, std::int64_t hereLimit, std::stop_token stop) {
  if (body.size() <= hereLimit) co_return readBody<Value>(std::move(body));
  auto shared = std::make_shared<Body>(std::move(body));
  auto read = co_await onWorker([held = std::move(shared)] { return readBody<Value>(std::move(*held)); }, stop);
  if (!read) co_return std::unexpected(read.error());
  co_return *std::move(read);
}

/// One operation: sends, waits, decodes.
template <class Value>
Task<Result<Value>> call(CallContext context, OutgoingRequest outgoing, std::stop_token stop) {
  const EitherStop either(stop, context.clientGone);
  auto body = co_await fetch(context, std::move(outgoing), either.token());
  if (!body) co_return std::unexpected(body.error());
  co_return co_await decodeBody<Value>(*std::move(body), context.decodeHereLimit, either.token());
}

}  // namespace varnel::client
