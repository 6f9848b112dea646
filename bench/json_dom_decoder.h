// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/json_peers.h"
#include "core/json/enum_names.h"
#include "core/json/reader.h"
#include "core/json/value.h"
#include "core/wire/request_fields.h"
#include "core/wire/session_fields.h"

namespace varnel::bench {

BOOST_DESCRIBE_STRUCT(PeerItem, (), (id, type, timestamp, role, phase, title, text, detail, status))
BOOST_DESCRIBE_STRUCT(PeerDetail, (), (items, pendingRequests, session))
BOOST_DESCRIBE_STRUCT(QtItem, (), (id, type, timestamp, role, phase, title, text, detail, status))
BOOST_DESCRIBE_STRUCT(QtDetail, (), (items))
BOOST_DESCRIBE_STRUCT(PeerEvent, (), (sequence, type, timestamp, sessionId, turnId, payload))
BOOST_DESCRIBE_STRUCT(QtEvent, (), (sequence, type, timestamp, sessionId, turnId, payload))

/// Fills records from a library's document tree, asking for each field by its name. `Dom` says how that library spells
/// things: `Value` (a cheap handle), `Text` (its own kind of string), `kind`, `string`, `number`, `integer`
/// (nothing when there is a fraction), `boolean`, `find`, `size`, `eachMember` and `eachElement`.
template <class Dom>
class DomDecoder {
 public:
  using Value = typename Dom::Value;

  template <class T>
  static T decode(const Value& value) {
    T result;
    read(value, result);
    return result;
  }

 private:
  static void expect(bool holds) {
    if (!holds) throw std::runtime_error("the document does not fit the record");
  }
  static void expect(const Value& value, json::Kind kind) { expect(Dom::kind(value) == kind); }

  static void read(const Value& value, typename Dom::Text& out) {
    expect(value, json::Kind::String);
    out = Dom::string(value);
  }
  static void read(const Value& value, double& out) {
    expect(value, json::Kind::Number);
    out = Dom::number(value);
  }
  static void read(const Value& value, bool& out) {
    expect(value, json::Kind::Bool);
    out = Dom::boolean(value);
  }
  static void read(const Value& value, std::int64_t& out) {
    expect(value, json::Kind::Number);
    const auto integer = Dom::integer(value);
    expect(integer.has_value());
    out = *integer;
  }
  static void read(const Value& value, QJsonValue& out) { out = value; }
  static void read(const Value& value, QJsonObject& out) {
    expect(value, json::Kind::Object);
    out = value.toObject();
  }

  static void read(const Value& value, json::JSONValue& out) {
    const auto as = [&]<class T>(T inner) {
      read(value, inner);
      out = std::move(inner);
    };
    switch (Dom::kind(value)) {
      case json::Kind::Null:
        return;
      case json::Kind::Bool:
        return as(false);
      case json::Kind::Number:
        return as(0.0);
      case json::Kind::String:
        return as(std::string());
      case json::Kind::Object:
        return as(json::JSONValue::Object());
      case json::Kind::Array:
        return as(json::JSONValue::Array());
    }
  }
  static void read(const Value& value, json::JSONValue::Object& out) {
    expect(value, json::Kind::Object);
    Dom::eachMember(value, [&](std::string_view key, const Value& member) { read(member, out[std::string(key)]); });
  }

  template <json::NamedEnum E>
  static void read(const Value& value, E& out) {
    expect(value, json::Kind::String);
    const auto named = json::fromName<E>(Dom::string(value));
    expect(named.has_value());
    out = *named;
  }

  template <class T>
  static void read(const Value& value, std::optional<T>& out) {
    if (Dom::kind(value) != json::Kind::Null) read(value, out.emplace());
  }

  template <class T>
  static void read(const Value& value, std::vector<T>& out) {
    expect(value, json::Kind::Array);
    out.reserve(Dom::size(value));
    Dom::eachElement(value, [&](const Value& element) { read(element, out.emplace_back()); });
  }

  template <class T>
  static constexpr bool kOptional = false;
  template <class T>
  static constexpr bool kOptional<std::optional<T>> = true;

  template <class T>
    requires boost::describe::has_describe_members<T>::value
  static void read(const Value& value, T& out) {
    expect(value, json::Kind::Object);
    boost::mp11::mp_for_each<boost::describe::describe_members<T, boost::describe::mod_public>>([&](auto field) {
      auto& member = out.*field.pointer;
      const std::optional<Value> found = Dom::find(value, field.name);
      expect(found.has_value() || kOptional<std::remove_reference_t<decltype(member)>>);
      if (found) read(*found, member);
    });
  }
};

}  // namespace varnel::bench
