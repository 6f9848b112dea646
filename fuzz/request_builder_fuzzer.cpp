// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/base/percent_encoding.h"
#include "core/live/operations.h"
#include "core/live/request.h"
#include "core/wire/codec.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool mayStandInUrl(char c) {
  return c > 0x20 && c < 0x7F;
}

/// Nothing that is sent may hold a character that ends a line or an address.
void checkRequest(const std::expected<live::HttpRequest, live::RequestError>& request) {
  if (!request) return;
  const auto url = base::Url::parse(request->url);
  require(url.has_value());
  const auto parts = url->parts();
  require(std::ranges::all_of(parts.path, mayStandInUrl));
  require(!parts.query || std::ranges::all_of(*parts.query, mayStandInUrl));
  require(!parts.fragment);
  for (const auto& header : request->headers)
    require(header.value.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos);
}

}  // namespace

/// The input is up to five texts, parted by NUL: base address, token, id, text, cursor.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::array<std::string, 5> texts;
  for (std::size_t i = 0, field = 0; i < size; ++i) {
    if (data[i] == 0 && field + 1 < texts.size()) {
      ++field;
    } else {
      texts[field].push_back(static_cast<char>(data[i]));
    }
  }
  const auto& [base, token, id, text, cursor] = texts;
  const auto url = base::Url::parse(base);
  if (!url || !wire::encode(wire::RenameBody{.name = base})) return 0;
  const std::optional credentials = wire::PairingCredentials{.baseURL = *url, .deviceId = "d", .token = token};

  using namespace live::operations;
  for (const live::Call& call :
       {sessions(), session(id), rename(id, text), search(text, cursor), usage(id), archivedSessions(cursor),
        resolve(id, json::JSONValue(text)), claim(*url, text, id), track(id, true, text)}) {
    checkRequest(live::buildRequest(call, credentials, "KEY"));
  }
  checkRequest(live::buildUpload(id, text, cursor, credentials, "KEY"));
  const auto stream = live::buildStreamAddress(static_cast<std::int64_t>(size), credentials);
  require(!stream || stream->contains("access_token=" + base::percentEncode(token, base::UrlSet::Unreserved)));

  // A text arrives whole, whatever it holds.
  const auto found = live::buildRequest(search(text, std::nullopt), credentials, "K");
  if (found) {
    const std::string_view sent = found->url;
    require(base::percentDecode(sent.substr(sent.rfind("?q=") + 3)) == text);
  }
  const auto upload = live::buildUpload("s", "a/b", cursor, credentials, "K");
  if (upload) require(live::fileNameFromHeader(upload->headers.back().value) == cursor);
  return 0;
}
