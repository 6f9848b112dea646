// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/json/decode_error.h"
#include "core/json/number.h"

namespace varnel::json {

/// Writes one compact JSON text piece by piece, in the order of the calls. Every function returns false on the first
/// piece that JSON cannot hold; `error` then says why.
class Writer {
 public:
  bool null() { return m_writer.Null(); }
  bool boolean(bool value) { return m_writer.Bool(value); }
  bool integer(std::int64_t value) { return m_writer.Int64(value); }
  bool number(double value) {
    if (!std::isfinite(value)) return fail("number is not finite");
    const std::string text = numberText(value);
    return m_writer.RawValue(text.data(), text.size(), rapidjson::kNumberType);
  }
  bool string(std::string_view value) {
    return isUtf8(value) ? m_writer.String(value.data(), size(value)) : fail("text is not UTF-8");
  }
  bool key(std::string_view value) {
    return isUtf8(value) ? m_writer.Key(value.data(), size(value)) : fail("key is not UTF-8");
  }
  bool beginObject() { return m_writer.StartObject(); }
  bool endObject() { return m_writer.EndObject(); }
  bool beginArray() { return m_writer.StartArray(); }
  bool endArray() { return m_writer.EndArray(); }

  bool fail(std::string reason) {
    m_error = {.path = {}, .reason = std::move(reason)};
    return false;
  }
  DecodeError& error() { return m_error; }
  [[nodiscard]] std::string text() const { return {m_buffer.GetString(), m_buffer.GetSize()}; }

 private:
  static rapidjson::SizeType size(std::string_view text) { return static_cast<rapidjson::SizeType>(text.size()); }
  /// RapidJSON's own check reads past the end of a text that breaks off inside a character.
  static bool isUtf8(std::string_view text);

  rapidjson::StringBuffer m_buffer;
  rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_buffer};
  DecodeError m_error;
};

}  // namespace varnel::json
