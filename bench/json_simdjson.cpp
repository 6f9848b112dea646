// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <simdjson.h>

#include "bench/json_dom_decoder.h"

namespace varnel::bench {

namespace {

struct Simdjson {
  using Value = simdjson::dom::element;
  using Text = std::string;

  static json::Kind kind(Value value) {
    using enum simdjson::dom::element_type;
    switch (value.type()) {
      case NULL_VALUE:
        return json::Kind::Null;
      case BOOL:
        return json::Kind::Bool;
      case STRING:
        return json::Kind::String;
      case OBJECT:
        return json::Kind::Object;
      case ARRAY:
        return json::Kind::Array;
      default:
        return json::Kind::Number;
    }
  }
  static std::string_view string(Value value) { return value.get_string().value_unsafe(); }
  static double number(Value value) { return value.get_double().value_unsafe(); }
  static bool boolean(Value value) { return value.get_bool().value_unsafe(); }
  static std::optional<std::int64_t> integer(Value value) {
    if (value.is_int64()) return value.get_int64().value_unsafe();
    return std::nullopt;
  }
  static std::optional<Value> find(Value value, const char* name) {
    Value found;
    if (value.at_key(name).get(found) != simdjson::SUCCESS) return std::nullopt;
    return found;
  }
  static std::size_t size(Value value) { return value.get_array().value_unsafe().size(); }
  static void eachMember(Value value, auto visit) {
    const simdjson::dom::object object = value.get_object();
    for (const auto member : object) visit(member.key, member.value);
  }
  static void eachElement(Value value, auto visit) {
    const simdjson::dom::array array = value.get_array();
    for (const Value element : array) visit(element);
  }
};

}  // namespace

struct SimdjsonPeer::State {
  simdjson::dom::parser parser;
};

SimdjsonPeer::SimdjsonPeer() : m_state(std::make_unique<State>()) {}
SimdjsonPeer::~SimdjsonPeer() = default;

std::size_t SimdjsonPeer::parse(std::string_view text) {
  const simdjson::dom::object document = m_state->parser.parse(text.data(), text.size());
  return document.size();
}

PeerDetail SimdjsonPeer::detail(std::string_view text) {
  return DomDecoder<Simdjson>::decode<PeerDetail>(m_state->parser.parse(text.data(), text.size()));
}

}  // namespace varnel::bench
