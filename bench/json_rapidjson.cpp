// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <rapidjson/document.h>

#include "bench/json_dom_decoder.h"

namespace varnel::bench {

namespace {

struct Rapidjson {
  using Value = const rapidjson::Value*;
  using Text = std::string;

  static json::Kind kind(Value value) {
    switch (value->GetType()) {
      case rapidjson::kNullType:
        return json::Kind::Null;
      case rapidjson::kFalseType:
      case rapidjson::kTrueType:
        return json::Kind::Bool;
      case rapidjson::kStringType:
        return json::Kind::String;
      case rapidjson::kObjectType:
        return json::Kind::Object;
      case rapidjson::kArrayType:
        return json::Kind::Array;
      case rapidjson::kNumberType:
        break;
    }
    return json::Kind::Number;
  }
  static std::string_view string(Value value) { return {value->GetString(), value->GetStringLength()}; }
  static double number(Value value) { return value->GetDouble(); }
  static bool boolean(Value value) { return value->GetBool(); }
  static std::optional<std::int64_t> integer(Value value) {
    if (value->IsInt64()) return value->GetInt64();
    return std::nullopt;
  }
  static std::optional<Value> find(Value value, const char* name) {
    const auto found = value->FindMember(name);
    return found == value->MemberEnd() ? std::nullopt : std::optional<Value>(&found->value);
  }
  static std::size_t size(Value value) { return value->Size(); }
  static void eachMember(Value value, auto visit) {
    for (const auto& member : value->GetObject()) visit(string(&member.name), &member.value);
  }
  static void eachElement(Value value, auto visit) {
    for (const auto& element : value->GetArray()) visit(&element);
  }
};

}  // namespace

PeerDetail detailByRapidjson(std::string_view text) {
  // Neither is RapidJSON's default; both are needed to accept and give what the others do.
  constexpr unsigned kFlags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseFullPrecisionFlag;
  rapidjson::Document document;
  document.Parse<kFlags>(text.data(), text.size());
  if (document.HasParseError()) throw std::runtime_error("RapidJSON refuses the document");
  return DomDecoder<Rapidjson>::decode<PeerDetail>(&document);
}

}  // namespace varnel::bench
