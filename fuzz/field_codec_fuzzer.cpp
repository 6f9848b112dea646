// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/json/raw_value.h"
#include "core/json/text.h"
#include "core/wire/bodies.h"
#include "core/wire/codec.h"
#include "core/wire/event.h"
#include "core/wire/pairing.h"
#include "core/wire/request.h"
#include "core/wire/search.h"
#include "core/wire/session.h"
#include "core/wire/session_detail.h"
#include "core/wire/transcript.h"
#include "core/wire/usage.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// A record either is refused with a reason or survives being written and read again.
template <class Record>
void check(std::string_view text) {
  const auto record = wire::decode<Record>(text);
  if (!record) {
    require(!record.error().reason.empty());
    return;
  }
  const auto written = wire::encode(*record);
  require(written.has_value());
  const auto again = wire::decode<Record>(*written);
  require(again && *again == *record && wire::hashOf(*again) == wire::hashOf(*record));
  require(wire::encode(*again) == written);
}

/// The three members of a detail are what decoding each of them from the whole answer gives.
void checkDetail(std::string_view text) {
  const auto detail = wire::decodeSessionDetail(std::string(text));
  const auto whole = json::parse(text);
  require(detail.has_value() == whole.has_value());
  if (!detail) return;
  require(detail->whole.value() == *whole);
  require(detail->items.has_value() == (whole->member("items") != nullptr));
  require(detail->session.has_value() == (whole->member("session") != nullptr));
  if (detail->session && *detail->session) check<wire::SessionSummary>(*wire::encode(**detail->session));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  check<wire::SessionsEnvelope>(text);
  check<wire::ProjectsEnvelope>(text);
  check<wire::TranscriptItem>(text);
  check<wire::PendingRequest>(text);
  check<wire::UsageEnvelope>(text);
  check<wire::RateLimitEnvelope>(text);
  check<wire::SearchEnvelope>(text);
  check<wire::ArchivedSessionsEnvelope>(text);
  check<wire::LiveEvent>(text);
  check<wire::PairPayload>(text);
  check<wire::PairingCredentials>(text);
  check<wire::MessageBody>(text);
  check<wire::NewSessionBody>(text);
  check<wire::ResolveBody>(text);
  check<wire::TrackingBody>(text);
  checkDetail(text);
  return 0;
}
