// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/url.h"
#include "core/json/decode_error.h"
#include "core/wire/pairing.h"

/// Requests to the bridge as plain values: what goes on the wire, to the last character, before any socket is touched.
namespace varnel::live {

struct Header {
  std::string name;
  std::string value;
  bool operator==(const Header&) const = default;
};

/// One HTTP request. Headers stand in the order in which they are set.
struct HttpRequest {
  std::string method;
  std::string url;  ///< absolute, percent-encoded
  std::vector<Header> headers;
  std::optional<std::string> body;
  bool operator==(const HttpRequest&) const = default;
};

/// What an operation asks for, still without an address and a token.
struct Call {
  std::string method;  ///< "GET", "POST" or "DELETE"
  std::string path;    ///< begins with "/v1/"; after a "?" an encoded query that is kept verbatim
  /// JSON text, or why the body could not be written.
  std::optional<std::expected<std::string, json::DecodeError>> body = std::nullopt;
  bool authenticated = true;
  bool idempotent = false;  ///< forces a key on a GET; every other method carries one anyway
  /// The server to talk to in place of the paired one.
  std::optional<base::Url> baseURL = std::nullopt;
};

/// Why a request cannot be built; nothing is sent then.
struct RequestError {
  enum class Kind {
    NotPaired,
    InvalidAddress,  ///< base address and path do not make a URL, or a path segment would climb ("..")
    InvalidHeader,   ///< the token, a media type or a key holds a control character
    InvalidBody,     ///< the body cannot be written as JSON
  };
  Kind kind = Kind::InvalidAddress;
  std::string detail;  ///< for people; never holds the token

  bool operator==(const RequestError&) const = default;
};

/// Time-out of every request, in seconds, counted from the last byte that moved.
inline constexpr int kRequestTimeoutSeconds = 60;

/// `idempotencyKey` is fresh for every call (an upper-case UUID) and used when the call carries one.
std::expected<HttpRequest, RequestError> buildRequest(const Call& call,
                                                      const std::optional<wire::PairingCredentials>& credentials,
                                                      std::string_view idempotencyKey);

/// The upload of one file; the bytes travel beside the returned value, which has no body. A file name that is plain
/// printable ASCII goes into "X-File-Name" as it is, any other in the extended notation of RFC 8187
/// (`UTF-8''na%C3%AFve.png`).
std::expected<HttpRequest, RequestError> buildUpload(std::string_view sessionId, std::string_view mimeType,
                                                     std::string_view fileName,
                                                     const std::optional<wire::PairingCredentials>& credentials,
                                                     std::string_view idempotencyKey);

/// The address of the event stream after a sequence number. The token stands in its query: never log it.
std::expected<std::string, RequestError> buildStreamAddress(std::int64_t after,
                                                            const std::optional<wire::PairingCredentials>& credentials);

/// The file name that an "X-File-Name" header stands for; the inverse of what `buildUpload` writes.
std::string fileNameFromHeader(std::string_view header);

}  // namespace varnel::live
