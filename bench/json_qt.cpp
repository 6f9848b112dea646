// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include "bench/json_dom_decoder.h"

namespace varnel::bench {

namespace {

struct QtDom {
  using Value = QJsonValue;
  using Text = QString;

  static json::Kind kind(const Value& value) {
    switch (value.type()) {
      case QJsonValue::Bool:
        return json::Kind::Bool;
      case QJsonValue::Double:
        return json::Kind::Number;
      case QJsonValue::String:
        return json::Kind::String;
      case QJsonValue::Array:
        return json::Kind::Array;
      case QJsonValue::Object:
        return json::Kind::Object;
      default:
        return json::Kind::Null;
    }
  }
  static QString string(const Value& value) { return value.toString(); }
  static double number(const Value& value) { return value.toDouble(); }
  static std::optional<std::int64_t> integer(const Value& value) {
    constexpr qint64 kNone = -1;
    const qint64 integer = value.toInteger(kNone);
    if (integer == kNone && value.toDouble() != -1.0) return std::nullopt;
    return integer;
  }
  static std::optional<Value> find(const Value& value, const char* name) {
    const QJsonObject object = value.toObject();
    const auto found = object.constFind(QLatin1String(name));
    return found == object.constEnd() ? std::nullopt : std::optional<Value>(*found);
  }
  static std::size_t size(const Value& value) { return static_cast<std::size_t>(value.toArray().size()); }
  static void eachElement(const Value& value, auto visit) {
    const QJsonArray array = value.toArray();
    for (const auto& element : array) visit(element);
  }
};

QJsonValue parsed(std::string_view text) {
  QJsonParseError fault;
  const auto size = static_cast<qsizetype>(text.size());
  const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(text.data(), size), &fault);
  if (fault.error != QJsonParseError::NoError) throw std::runtime_error("QJsonDocument refuses the document");
  return document.object();
}

}  // namespace

QtDetail detailByQt(std::string_view text) {
  return DomDecoder<QtDom>::decode<QtDetail>(parsed(text));
}

QtEvent eventByQt(std::string_view text) {
  return DomDecoder<QtDom>::decode<QtEvent>(parsed(text));
}

}  // namespace varnel::bench
