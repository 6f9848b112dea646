// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/pipeline.h"

#include "core/wire/bodies.h"

namespace varnel::client {

ClientError toClientError(live::RequestError error) {
  if (error.kind == live::RequestError::Kind::NotPaired) return APIError{APIError::Kind::NotPaired, 0, {}};
  return error;
}

ClientError toClientError(Body::Failure failure) {
  if (failure == Body::Failure::NotGzip) return APIError{APIError::Kind::InvalidResponse, 0, {}};
  return TransportError{TransportError::Kind::TooLarge, "The answer of the bridge is too large."};
}

Task<Result<Body>> fetch(CallContext context, OutgoingRequest outgoing, std::stop_token stop) {
  if (!outgoing.request) co_return std::unexpected(toClientError(outgoing.request.error()));
  auto answer = co_await exchange(*std::move(outgoing.request), std::move(outgoing.file), context.limits, stop);
  if (!answer) co_return std::unexpected(answer.error());
  *context.contract = answer->contract;
  if (answer->status >= 200 && answer->status <= 299) co_return Result<Body>(std::move(answer->body));

  const int status = answer->status;
  auto error = co_await decodeBody<wire::ServerError>(std::move(answer->body), context.decodeHereLimit, stop);
  if (!error && isCancelled(error.error())) co_return std::unexpected(error.error());
  std::string message = error ? std::move(error->error) : std::move(outgoing.fallbackMessage);
  co_return std::unexpected(ClientError(APIError{APIError::Kind::Server, status, std::move(message)}));
}

}  // namespace varnel::client
