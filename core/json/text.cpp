// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/text.h"

#include <simdjson.h>

#include "core/json/codec.h"

namespace varnel::json {

bool isUtf8(std::string_view text) {
  return simdjson::validate_utf8(text.data(), text.size());
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
