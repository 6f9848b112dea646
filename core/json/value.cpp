// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/value.h"

#include <rapidjson/prettywriter.h>

#include <algorithm>

#include "core/json/described.h"
#include "core/json/number.h"
#include "core/json/text.h"

namespace varnel::json {

namespace {

using Pretty = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void writePretty(Pretty& out, const JSONValue& value) {
  const auto size = [](const std::string& text) { return static_cast<rapidjson::SizeType>(text.size()); };
  if (const auto* object = value.object()) {
    out.StartObject();
    for (const auto& [key, member] : *object) {
      out.Key(key.data(), size(key));
      writePretty(out, member);
    }
    out.EndObject();
  } else if (const auto* array = value.array()) {
    out.StartArray();
    for (const JSONValue& element : *array) writePretty(out, element);
    out.EndArray();
  } else if (const auto* text = value.string()) {
    out.String(text->data(), size(*text));
  } else if (const auto* number = value.number()) {
    const std::string digits = numberText(*number);
    out.RawValue(digits.data(), digits.size(), rapidjson::kNumberType);
  } else if (const auto* boolean = value.boolean()) {
    out.Bool(*boolean);
  } else {
    out.Null();
  }
}

/// A text as a quoted literal, the way a debugger shows it.
std::string describeText(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
      case '\\':
        out.append(1, '\\').append(1, c);
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      case '\0':
        out += "\\0";
        break;
      default:
        out.push_back(c);
    }
  }
  return out + "\"";
}

std::string describe(const JSONValue& value);

std::string describeContainer(const JSONValue& value) {
  std::string out;
  if (const auto* array = value.array()) {
    for (const JSONValue& element : *array) out.append(out.empty() ? "" : ", ").append(describe(element));
    return "array([" + out + "])";
  }
  for (const auto& [key, member] : *value.object()) {
    out.append(out.empty() ? "" : ", ").append(describeText(key)).append(": ").append(describe(member));
  }
  return "object([" + (out.empty() ? ":" : out) + "])";
}

std::string describe(const JSONValue& value) {
  if (const auto* text = value.string()) return "string(" + describeText(*text) + ")";
  if (const auto* number = value.number()) return "number(" + describeNumber(*number) + ")";
  if (const auto* boolean = value.boolean()) return *boolean ? "bool(true)" : "bool(false)";
  return value.isNull() ? "null" : describeContainer(value);
}

}  // namespace

const JSONValue* JSONValue::member(std::string_view name) const {
  const Object* members = object();
  if (members == nullptr) return nullptr;
  const auto found = members->find(name);
  return found == members->end() ? nullptr : &found->second;
}

std::string JSONValue::prettyPrinted() const {
  // Writing it compactly first tells whether it can be written at all.
  const auto compact = write(*this);
  if ((object() == nullptr && array() == nullptr) || !compact || !parse(*compact)) return describe(*this);
  rapidjson::StringBuffer buffer;
  Pretty out(buffer);
  out.SetIndent(' ', 2);
  writePretty(out, *this);
  // A slash occurs in JSON nowhere but inside strings.
  const std::string_view plain(buffer.GetString(), buffer.GetSize());
  std::string escaped;
  escaped.reserve(plain.size());
  for (const char c : plain) {
    if (c == '/') escaped.push_back('\\');
    escaped.push_back(c);
  }
  return escaped;
}

std::size_t JSONValue::hash() const {
  std::size_t seed = m_value.index();
  if (const auto* members = object()) {
    for (const auto& [key, member] : *members) {
      mixHash(seed, std::hash<std::string>{}(key));
      mixHash(seed, member.hash());
    }
  } else if (const auto* elements = array()) {
    for (const JSONValue& element : *elements) mixHash(seed, element.hash());
  } else if (const auto* text = string()) {
    mixHash(seed, std::hash<std::string>{}(*text));
  } else if (const auto* value = number()) {
    mixHash(seed, std::hash<double>{}(*value));
  } else if (const auto* flag = boolean()) {
    mixHash(seed, std::hash<bool>{}(*flag));
  }
  return seed;
}

}  // namespace varnel::json
