// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <nlohmann/json.hpp>

#include "bench/json_dom_decoder.h"

namespace varnel::bench {

namespace {

struct Nlohmann {
  using Value = const nlohmann::json*;
  using Text = std::string;

  static json::Kind kind(Value value) {
    using enum nlohmann::json::value_t;
    switch (value->type()) {
      case null:
        return json::Kind::Null;
      case boolean:
        return json::Kind::Bool;
      case string:
        return json::Kind::String;
      case object:
        return json::Kind::Object;
      case array:
        return json::Kind::Array;
      default:
        return json::Kind::Number;
    }
  }
  static const std::string& string(Value value) { return value->get_ref<const std::string&>(); }
  static double number(Value value) { return value->get<double>(); }
  static bool boolean(Value value) { return value->get<bool>(); }
  static std::optional<std::int64_t> integer(Value value) {
    if (value->is_number_integer()) return value->get<std::int64_t>();
    return std::nullopt;
  }
  static std::optional<Value> find(Value value, const char* name) {
    const auto found = value->find(name);
    return found == value->end() ? std::nullopt : std::optional<Value>(&*found);
  }
  static std::size_t size(Value value) { return value->size(); }
  static void eachMember(Value value, auto visit) {
    for (const auto& [key, member] : value->get_ref<const nlohmann::json::object_t&>()) visit(key, &member);
  }
  static void eachElement(Value value, auto visit) {
    for (const auto& element : *value) visit(&element);
  }
};

}  // namespace

PeerDetail detailByNlohmann(std::string_view text) {
  const nlohmann::json document = nlohmann::json::parse(text);
  return DomDecoder<Nlohmann>::decode<PeerDetail>(&document);
}

PeerEvent eventByNlohmann(std::string_view text) {
  const nlohmann::json document = nlohmann::json::parse(text);
  return DomDecoder<Nlohmann>::decode<PeerEvent>(&document);
}

}  // namespace varnel::bench
