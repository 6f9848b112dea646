// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <expected>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/url.h"
#include "core/json/value.h"
#include "core/wire/catalogue.h"
#include "core/wire/session.h"

namespace varnel::inspect {

/// An argument that an operation takes.
struct Parameter {
  enum class Kind { Text, Flag, URL, Mode, Preferences, Attachments, Any, File };
  std::string_view name;
  Kind kind = Kind::Text;
  bool required = true;
};

/// The checked arguments of one operation: each accessor may be called for a parameter of its kind.
class Arguments {
 public:
  /// Fails, with the reason, on text that is not an object, on a name that the operation does not take, on a missing
  /// argument and on one of the wrong kind. Reads the files.
  static std::expected<Arguments, std::string> parse(std::string_view text, std::span<const Parameter> parameters);

  [[nodiscard]] std::string text(std::string_view name) const { return optionalText(name).value_or(""); }
  [[nodiscard]] std::optional<std::string> optionalText(std::string_view name) const;
  /// False when left out.
  [[nodiscard]] bool flag(std::string_view name) const;
  [[nodiscard]] json::JSONValue any(std::string_view name) const;
  [[nodiscard]] base::Url url(std::string_view name) const;
  [[nodiscard]] wire::ConversationPreferences preferences(std::string_view name) const;
  /// None when left out.
  [[nodiscard]] std::vector<wire::UploadedAttachment> attachments(std::string_view name) const;
  [[nodiscard]] QByteArray file(std::string_view name) const;

 private:
  std::optional<std::string> check(const Parameter& parameter, const json::JSONValue& value);

  json::JSONValue::Object m_values;
  std::map<std::string, QByteArray, std::less<>> m_files;
};

}  // namespace varnel::inspect
