// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/base/url.h"
#include "core/json/described.h"
#include "core/json/enum_names.h"
#include "core/json/excerpt.h"
#include "core/json/raw_value.h"
#include "core/json/reader.h"
#include "core/json/value.h"
#include "core/json/writer.h"

/// One codec for everything that crosses the bridge: by a value's type alone it is read strictly and written compactly.
/// Records follow in `record_codec.h`.
namespace varnel::json {

template <class T>
struct Codec;

template <>
struct Codec<std::string> {
  static bool read(Reader& in, std::string& out) {
    std::string_view text;
    if (!in.readText(text)) return false;
    out = std::string(text);
    return true;
  }
  static bool write(Writer& out, const std::string& value) { return out.string(value); }
};

template <>
struct Codec<double> {
  static bool read(Reader& in, double& out) { return in.readDouble(out); }
  static bool write(Writer& out, double value) { return out.number(value); }
};

template <>
struct Codec<std::int64_t> {
  static bool read(Reader& in, std::int64_t& out) { return in.readInteger(out); }
  static bool write(Writer& out, std::int64_t value) { return out.integer(value); }
};

template <>
struct Codec<bool> {
  static bool read(Reader& in, bool& out) { return in.readBool(out); }
  static bool write(Writer& out, bool value) { return out.boolean(value); }
};

template <>
struct Codec<JSONValue> {
  static bool read(Reader& in, JSONValue& out);
  static bool write(Writer& out, const JSONValue& value);
};

/// An object whose member names are data. Of a key that stands twice the later one holds.
template <class T>
struct Codec<std::map<std::string, T, std::less<>>> {
  static bool read(Reader& in, std::map<std::string, T, std::less<>>& out) {
    out.clear();
    if (!in.enterObject()) return false;
    for (bool more = true;;) {
      std::string_view key;
      if (!in.nextMember(key, more)) return false;
      if (!more) return true;
      // The key's text may be gone once the value is read.
      auto entry = out.insert_or_assign(std::string(key), T()).first;
      if (!Codec<T>::read(in, entry->second)) {
        in.error().prependMember(excerpt(entry->first));
        return false;
      }
    }
  }
  static bool write(Writer& out, const std::map<std::string, T, std::less<>>& value) {
    if (!out.beginObject()) return false;
    for (const auto& [key, member] : value) {
      if (!out.key(key)) return false;
      if (!Codec<T>::write(out, member)) {
        out.error().prependMember(excerpt(key));
        return false;
      }
    }
    return out.endObject();
  }
};

/// Keeps the text, checked in full, in place of the tree.
template <>
struct Codec<RawValue> {
  static bool read(Reader& in, RawValue& out) { return in.readRaw(out); }
  static bool write(Writer& out, const RawValue& value) { return Codec<JSONValue>::write(out, value.value()); }
};

template <>
struct Codec<RawObject> {
  static bool read(Reader& in, RawObject& out) {
    RawValue value;
    if (!in.expectObject() || !in.readRaw(value)) return false;
    out = RawObject(std::move(value));
    return true;
  }
  static bool write(Writer& out, const RawObject& value) { return Codec<JSONValue::Object>::write(out, value.value()); }
};

template <>
struct Codec<base::Url> {
  static bool read(Reader& in, base::Url& out) {
    std::string_view text;
    if (!in.readText(text)) return false;
    const auto url = base::Url::parse(text);
    if (!url) return in.fail("not a URL");
    out = *url;
    return true;
  }
  static bool write(Writer& out, const base::Url& value) { return out.string(value.text()); }
};

template <NamedEnum E>
struct Codec<E> {
  static bool read(Reader& in, E& out) {
    std::string_view text;
    if (!in.readText(text)) return false;
    const auto value = fromName<E>(text);
    if (!value) return in.fail("unknown value " + excerpt(text));
    out = *value;
    return true;
  }
  static bool write(Writer& out, E value) { return out.string(nameOf(value)); }
};

/// Null leaves it absent; that an absent member is not written at all is the record's business.
template <class T>
struct Codec<std::optional<T>> {
  static bool read(Reader& in, std::optional<T>& out) {
    Kind kind{};
    if (!in.peek(kind)) return false;
    if (kind != Kind::Null) return Codec<T>::read(in, out.emplace());
    out.reset();
    return in.readNull();
  }
};

template <class T>
struct Codec<std::vector<T>> {
  static bool read(Reader& in, std::vector<T>& out) {
    out.clear();
    if (!in.enterArray()) return false;
    for (bool more = true;;) {
      if (!in.nextElement(more)) return false;
      if (!more) return true;
      if (!Codec<T>::read(in, out.emplace_back())) {
        in.error().prependIndex(out.size() - 1);
        return false;
      }
    }
  }
  static bool write(Writer& out, const std::vector<T>& value) {
    if (!out.beginArray()) return false;
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (!Codec<T>::write(out, value[i])) {
        out.error().prependIndex(i);
        return false;
      }
    }
    return out.endArray();
  }
};

/// Reads exactly one value from a text.
template <class T>
std::expected<T, DecodeError> decodeText(std::string_view text) {
  // Made where it is returned: moving a record costs as much as reading a small one.
  std::expected<T, DecodeError> result;
  Reader in(text);
  if (!Codec<T>::read(in, *result) || !in.finish()) result = std::unexpected(std::move(in.error()));
  return result;
}

template <class T>
std::expected<std::string, DecodeError> encodeText(const T& value) {
  Writer out;
  if (Codec<T>::write(out, value)) return out.text();
  return std::unexpected(std::move(out.error()));
}

}  // namespace varnel::json
