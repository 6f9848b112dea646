// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/json/record_codec.h"
#include "core/wire/codec.h"

namespace varnel::wire {

template <class Record>
std::expected<Record, json::DecodeError> decode(std::string_view text) {
  return json::decodeText<Record>(text);
}

template <class Record>
std::expected<std::string, json::DecodeError> encode(const Record& record) {
  return json::encodeText(record);
}

template <class Record>
std::size_t hashOf(const Record& record) {
  return json::hashValue(record);
}

}  // namespace varnel::wire

/// Everything that `codec.h` and a record's own header promise, made here once. Use it inside `varnel::wire`.
#define VARNEL_RECORD(R)                                                                              \
  bool operator==(const R& a, const R& b) {                                                           \
    return json::equal(a, b);                                                                         \
  }                                                                                                   \
  template std::expected<R, json::DecodeError> decode<R>(std::string_view);                           \
  template std::expected<std::string, json::DecodeError> encode<R>(const R&);                         \
  template std::size_t hashOf<R>(const R&);                                                           \
  template std::expected<std::vector<R>, json::DecodeError> decode<std::vector<R>>(std::string_view); \
  template std::expected<std::string, json::DecodeError> encode<std::vector<R>>(const std::vector<R>&);
