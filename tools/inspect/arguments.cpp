// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/arguments.h"

#include <QFile>
#include <algorithm>

#include "core/json/text.h"
#include "core/wire/codec.h"

namespace varnel::inspect {

namespace {

template <class Record>
std::expected<Record, json::DecodeError> recordIn(const json::JSONValue& value) {
  const auto text = json::write(value);
  if (!text) return std::unexpected(text.error());
  return wire::decode<Record>(*text);
}

template <class Record>
std::optional<std::string> reasonAgainst(const json::JSONValue& value) {
  const auto record = recordIn<Record>(value);
  return record ? std::nullopt : std::optional(record.error().message());
}

std::optional<std::string> unless(bool good, const char* reason) {
  return good ? std::nullopt : std::optional<std::string>(reason);
}

}  // namespace

std::expected<Arguments, std::string> Arguments::parse(std::string_view text, std::span<const Parameter> parameters) {
  auto value = json::parse(text);
  if (!value) return std::unexpected("ARGS: " + value.error().message());
  if (value->object() == nullptr) return std::unexpected("ARGS: expected an object");
  Arguments arguments;
  arguments.m_values = std::move(*value->object());
  std::erase_if(arguments.m_values, [](const auto& entry) { return entry.second.isNull() && entry.first != "result"; });
  for (const auto& [name, given] : arguments.m_values) {
    const auto known = std::ranges::find(parameters, name, &Parameter::name);
    if (known == parameters.end()) return std::unexpected("ARGS: no argument is called " + name);
    if (const auto reason = arguments.check(*known, given)) return std::unexpected("ARGS: " + name + ": " + *reason);
  }
  for (const Parameter& parameter : parameters) {
    if (parameter.required && !arguments.m_values.contains(parameter.name)) {
      return std::unexpected("ARGS: " + std::string(parameter.name) + " is missing");
    }
  }
  return arguments;
}

std::optional<std::string> Arguments::check(const Parameter& parameter, const json::JSONValue& value) {
  using Kind = Parameter::Kind;
  const std::string* text = value.string();
  switch (parameter.kind) {
    case Kind::Text:
      return unless(text != nullptr, "expected a string");
    case Kind::Flag:
      return unless(value.boolean() != nullptr, "expected true or false");
    case Kind::URL:
      return unless(text != nullptr && base::Url::parse(*text), "expected a URL");
    case Kind::Mode:
      return unless(text != nullptr && json::fromName<wire::CodexCollaborationMode>(*text), "expected default or plan");
    case Kind::Preferences:
      return reasonAgainst<wire::ConversationPreferences>(value);
    case Kind::Attachments:
      return reasonAgainst<std::vector<wire::UploadedAttachment>>(value);
    case Kind::Any:
      return std::nullopt;
    case Kind::File:
      break;
  }
  if (text == nullptr) return "expected a path";
  QFile file(QString::fromStdString(*text));
  if (!file.open(QIODevice::ReadOnly)) return "cannot be read: " + file.errorString().toStdString();
  m_files[std::string(parameter.name)] = file.readAll();
  return std::nullopt;
}

std::optional<std::string> Arguments::optionalText(std::string_view name) const {
  const auto found = m_values.find(name);
  if (found == m_values.end()) return std::nullopt;
  return *found->second.string();
}

bool Arguments::flag(std::string_view name) const {
  const auto found = m_values.find(name);
  return found != m_values.end() && *found->second.boolean();
}

json::JSONValue Arguments::any(std::string_view name) const {
  const auto found = m_values.find(name);
  return found == m_values.end() ? json::JSONValue() : found->second;
}

base::Url Arguments::url(std::string_view name) const {
  return base::Url::parse(text(name)).value_or(base::Url());
}

wire::ConversationPreferences Arguments::preferences(std::string_view name) const {
  return recordIn<wire::ConversationPreferences>(any(name)).value_or(wire::ConversationPreferences());
}

std::vector<wire::UploadedAttachment> Arguments::attachments(std::string_view name) const {
  return recordIn<std::vector<wire::UploadedAttachment>>(any(name)).value_or(std::vector<wire::UploadedAttachment>());
}

QByteArray Arguments::file(std::string_view name) const {
  const auto found = m_files.find(name);
  return found == m_files.end() ? QByteArray() : found->second;
}

}  // namespace varnel::inspect
