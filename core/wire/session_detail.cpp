// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/session_detail.h"

#include "core/json/record_codec.h"
#include "core/wire/catalogue_fields.h"
#include "core/wire/queue_fields.h"
#include "core/wire/request_fields.h"
#include "core/wire/session_fields.h"
#include "core/wire/transcript_fields.h"

namespace varnel::wire {

namespace {

/// Reads one member strictly; where it does not fit, passes over it as plain JSON so that the rest can be read.
template <class T>
bool readMember(json::Reader& in, std::string_view name, SessionDetail::Member<T>& out) {
  const auto begin = in.mark();
  T value;
  if (json::Codec<T>::read(in, value)) {
    out.emplace(std::move(value));
    return true;
  }
  json::DecodeError fault = std::move(in.error());
  fault.prependMember(name);
  in.rewind(begin);
  std::string_view ignored;
  if (!in.skipValue(ignored)) return false;
  out.emplace(std::unexpected(std::move(fault)));
  return true;
}

bool readAny(json::Reader& in, std::string_view key, SessionDetail& out) {
  if (key == "items") return readMember(in, key, out.items);
  if (key == "pendingRequests") return readMember(in, key, out.pendingRequests);
  if (key == "session") return readMember(in, key, out.session);
  if (key == "queued") return readMember(in, key, out.queued);
  std::string_view ignored;
  return in.skipValue(ignored);
}

bool readDetail(json::Reader& in, SessionDetail& out) {
  json::Kind kind{};
  std::string_view ignored;
  if (!in.peek(kind)) return false;
  if (kind != json::Kind::Object) return in.skipValue(ignored) && in.finish();
  if (!in.enterObject()) return false;
  for (bool more = true;;) {
    std::string_view key;
    if (!in.nextMember(key, more)) return false;
    if (!more) return in.finish();
    if (!readAny(in, key, out)) return false;
  }
}

}  // namespace

std::expected<SessionDetail, json::DecodeError> decodeSessionDetail(std::string text) {
  SessionDetail detail;
  auto whole = std::make_shared<const std::string>(std::move(text));
  json::Reader in(whole);
  if (!readDetail(in, detail)) return std::unexpected(std::move(in.error()));
  const std::string_view all = *whole;
  detail.whole = json::RawValue::share(std::move(whole), all);
  return detail;
}

}  // namespace varnel::wire
