// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <boost/json/src.hpp>

#include "bench/json_dom_decoder.h"

namespace varnel::bench {

namespace {

struct Boost {
  using Value = const boost::json::value*;
  using Text = std::string;

  static json::Kind kind(Value value) {
    switch (value->kind()) {
      case boost::json::kind::null:
        return json::Kind::Null;
      case boost::json::kind::bool_:
        return json::Kind::Bool;
      case boost::json::kind::string:
        return json::Kind::String;
      case boost::json::kind::object:
        return json::Kind::Object;
      case boost::json::kind::array:
        return json::Kind::Array;
      default:
        return json::Kind::Number;
    }
  }
  static std::string_view string(Value value) { return value->get_string(); }
  static double number(Value value) { return value->to_number<double>(); }
  static bool boolean(Value value) { return value->get_bool(); }
  static std::optional<std::int64_t> integer(Value value) {
    if (value->is_int64()) return value->get_int64();
    return std::nullopt;
  }
  static std::optional<Value> find(Value value, const char* name) {
    Value found = value->get_object().if_contains(name);
    return found == nullptr ? std::nullopt : std::optional<Value>(found);
  }
  static std::size_t size(Value value) { return value->get_array().size(); }
  static void eachMember(Value value, auto visit) {
    for (const auto& member : value->get_object()) visit(member.key(), &member.value());
  }
  static void eachElement(Value value, auto visit) {
    for (const auto& element : value->get_array()) visit(&element);
  }
};

}  // namespace

PeerDetail detailByBoost(std::string_view text) {
  // The quickest of its memory resources for a document that is thrown away as a whole.
  boost::json::monotonic_resource memory;
  const boost::json::value document = boost::json::parse(text, &memory);
  return DomDecoder<Boost>::decode<PeerDetail>(&document);
}

}  // namespace varnel::bench
