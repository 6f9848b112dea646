// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/request.h"

#include <algorithm>

#include "core/base/percent_encoding.h"

namespace varnel::live {

namespace {

using base::UrlSet;

std::unexpected<RequestError> refuse(RequestError::Kind kind, std::string detail = {}) {
  return std::unexpected(RequestError{.kind = kind, .detail = std::move(detail)});
}

/// A segment that a URL library would resolve, so that the request would climb out of its path.
bool climbs(std::string_view path) {
  for (;;) {
    const auto slash = path.find('/');
    const auto segment = base::percentDecode(path.substr(0, slash));
    if (segment == "." || segment == "..") return true;
    if (slash == std::string_view::npos) return false;
    path.remove_prefix(slash + 1);
  }
}

struct Target {
  std::string_view path;  ///< below the base address, percent-encoded where an operation has done so
  std::optional<std::string_view> query = std::nullopt;
};

/// `scheme` replaces the base address's own when it is given.
std::expected<std::string, RequestError> address(const base::Url& baseURL, const Target& target,
                                                 std::string_view scheme = {}) {
  const auto parts = baseURL.parts();
  if (!parts.authority || parts.authority->empty()) {
    return refuse(RequestError::Kind::InvalidAddress, "The address of the bridge has no host.");
  }
  std::string_view prefix = parts.path;
  if (prefix.ends_with('/')) prefix.remove_suffix(1);
  const std::string path = base::percentEncodeMissing(std::string(prefix) + std::string(target.path), UrlSet::Path);
  if (climbs(path)) return refuse(RequestError::Kind::InvalidAddress, "The identifier cannot stand in an address.");
  if (target.query && base::percentEncodeMissing(*target.query, UrlSet::Query) != *target.query) {
    return refuse(RequestError::Kind::InvalidAddress, "The query of the request is not encoded.");
  }
  const auto query = target.query ? target.query : parts.query;
  std::string url(scheme.empty() ? parts.scheme : scheme);
  if (!url.empty()) url += ":";
  url.append("//").append(*parts.authority).append(path);
  if (query) url.append("?").append(base::percentEncodeMissing(*query, UrlSet::Query));
  return url;
}

/// Text that may follow a header's name: nothing that could begin another header.
bool mayStandInHeader(std::string_view text) {
  return std::ranges::none_of(text,
                              [](char c) { return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F; });
}

constexpr std::string_view kExtendedPrefix = "UTF-8''";

bool isPlainFileName(std::string_view name) {
  return !name.empty() && name.front() != ' ' && name.back() != ' ' && !name.starts_with(kExtendedPrefix) &&
         std::ranges::all_of(name, [](char c) { return c >= 0x20 && c < 0x7F; });
}

std::expected<HttpRequest, RequestError> checkHeaders(HttpRequest request) {
  for (const Header& header : request.headers) {
    if (!mayStandInHeader(header.value)) return refuse(RequestError::Kind::InvalidHeader, header.name);
  }
  return request;
}

}  // namespace

std::expected<HttpRequest, RequestError> buildRequest(const Call& call,
                                                      const std::optional<wire::PairingCredentials>& credentials,
                                                      std::string_view idempotencyKey) {
  if (!call.baseURL && !credentials) return refuse(RequestError::Kind::NotPaired);
  Target target{.path = call.path};
  if (const auto mark = call.path.find('?'); mark != std::string::npos) {
    target = {.path = std::string_view(call.path).substr(0, mark),
              .query = std::string_view(call.path).substr(mark + 1)};
  }
  auto url = address(call.baseURL ? *call.baseURL : credentials->baseURL, target);
  if (!url) return std::unexpected(url.error());

  HttpRequest request{.method = call.method, .url = std::move(*url), .headers = {}, .body = std::nullopt};
  request.headers.push_back({.name = "Accept", .value = "application/json"});
  if (call.authenticated && credentials) {
    request.headers.push_back({.name = "Authorization", .value = "Bearer " + credentials->token});
  }
  if (call.idempotent || call.method != "GET") {
    request.headers.push_back({.name = "Idempotency-Key", .value = std::string(idempotencyKey)});
  }
  if (call.body) {
    if (!*call.body) return refuse(RequestError::Kind::InvalidBody, call.body->error().message());
    request.body = **call.body;
    request.headers.push_back({.name = "Content-Type", .value = "application/json"});
  }
  return checkHeaders(std::move(request));
}

std::expected<HttpRequest, RequestError> buildUpload(std::string_view sessionId, std::string_view mimeType,
                                                     std::string_view fileName,
                                                     const std::optional<wire::PairingCredentials>& credentials,
                                                     std::string_view idempotencyKey) {
  if (!credentials) return refuse(RequestError::Kind::NotPaired);
  const std::string path = "/v1/sessions/" + std::string(sessionId) + "/uploads";
  auto url = address(credentials->baseURL, {.path = path});
  if (!url) return std::unexpected(url.error());
  std::string name(fileName);
  if (!isPlainFileName(fileName)) {
    name = std::string(kExtendedPrefix) + base::percentEncode(fileName, UrlSet::Unreserved);
  }
  return checkHeaders({.method = "POST",
                       .url = std::move(*url),
                       .headers = {{.name = "Authorization", .value = "Bearer " + credentials->token},
                                   {.name = "Idempotency-Key", .value = std::string(idempotencyKey)},
                                   {.name = "Content-Type", .value = std::string(mimeType)},
                                   {.name = "X-File-Name", .value = std::move(name)}},
                       .body = std::nullopt});
}

std::expected<std::string, RequestError> buildStreamAddress(
    std::int64_t after, const std::optional<wire::PairingCredentials>& credentials) {
  if (!credentials) return refuse(RequestError::Kind::NotPaired);
  const std::string query =
      "after=" + std::to_string(after) + "&access_token=" + base::percentEncode(credentials->token, UrlSet::Unreserved);
  const bool secure = credentials->baseURL.parts().scheme == "https";
  return address(credentials->baseURL, {.path = "/v1/events", .query = query}, secure ? "wss" : "ws");
}

std::string fileNameFromHeader(std::string_view header) {
  if (!header.starts_with(kExtendedPrefix)) return std::string(header);
  return base::percentDecode(header.substr(kExtendedPrefix.size())).value_or(std::string(header));
}

}  // namespace varnel::live
