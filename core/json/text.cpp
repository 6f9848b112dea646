// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/text.h"

#include <simdjson.h>

#include <cstdint>
#include <cstring>

#include "core/json/codec.h"

namespace varnel::json {

namespace {

/// Most events are; looking costs less than calling the library.
bool isShortAscii(std::string_view text) {
  constexpr std::size_t kShort = 1024;
  constexpr std::size_t kWord = 8;
  constexpr std::uint64_t kHighs = 0x8080808080808080;
  if (text.size() < kWord || text.size() > kShort) return false;
  std::uint64_t seen = 0;
  std::uint64_t word = 0;
  for (std::size_t at = 0; at + kWord <= text.size(); at += kWord) {
    std::memcpy(&word, text.data() + at, kWord);
    seen |= word;
  }
  // The last word may overlap the one before it.
  std::memcpy(&word, text.data() + text.size() - kWord, kWord);
  return ((seen | word) & kHighs) == 0;
}

}  // namespace

bool isUtf8(std::string_view text) {
  return isShortAscii(text) || simdjson::validate_utf8(text.data(), text.size());
}

bool Writer::isUtf8(std::string_view text) {
  return json::isUtf8(text);
}

bool Codec<JSONValue>::read(Reader& in, JSONValue& out) {
  Kind kind{};
  if (!in.peek(kind)) return false;
  const auto readAs = [&]<class T>(T value) {
    if (!Codec<T>::read(in, value)) return false;
    out = std::move(value);
    return true;
  };
  switch (kind) {
    case Kind::Null:
      out = JSONValue();
      return in.readNull();
    case Kind::Bool:
      return readAs(false);
    case Kind::Number:
      return readAs(0.0);
    case Kind::String:
      return readAs(std::string());
    case Kind::Object:
      return readAs(JSONValue::Object());
    case Kind::Array:
      return readAs(JSONValue::Array());
  }
  return false;
}

bool Codec<JSONValue>::write(Writer& out, const JSONValue& value) {
  if (const auto* object = value.object()) return Codec<JSONValue::Object>::write(out, *object);
  if (const auto* array = value.array()) return Codec<JSONValue::Array>::write(out, *array);
  if (const auto* text = value.string()) return out.string(*text);
  if (const auto* number = value.number()) return out.number(*number);
  if (const auto* boolean = value.boolean()) return out.boolean(*boolean);
  return out.null();
}

std::expected<JSONValue, DecodeError> parse(std::string_view text) {
  return decodeText<JSONValue>(text);
}

std::expected<std::string, DecodeError> write(const JSONValue& value) {
  return encodeText(value);
}

}  // namespace varnel::json
