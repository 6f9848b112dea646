// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/catalogue.h"

#include <optional>
#include <string>
#include <string_view>

namespace varnel::live {
namespace {

using json::JSONValue;

const std::string* stringMember(const JSONValue& object, std::string_view name) {
  const auto* member = object.member(name);
  return member ? member->string() : nullptr;
}

const JSONValue::Array& arrayMember(const JSONValue& object, std::string_view name) {
  static const JSONValue::Array kEmpty;
  const auto* member = object.member(name);
  const auto* array = member ? member->array() : nullptr;
  return array ? *array : kEmpty;
}

std::vector<std::string> parseEfforts(const JSONValue& model) {
  std::vector<std::string> efforts;
  for (const auto& entry : arrayMember(model, "supportedReasoningEfforts")) {
    const auto* effort = entry.string() ? entry.string() : stringMember(entry, "reasoningEffort");
    if (effort) efforts.push_back(*effort);
  }
  return efforts;
}

std::vector<wire::ServiceTierOption> parseTiers(const JSONValue& model) {
  std::vector<wire::ServiceTierOption> tiers;
  for (const auto& entry : arrayMember(model, "serviceTiers")) {
    const auto* id = stringMember(entry, "id");
    const auto* name = stringMember(entry, "name");
    if (!id || !name) continue;
    const auto* description = stringMember(entry, "description");
    tiers.push_back({.id = *id, .name = *name, .description = description ? *description : *name});
  }
  return tiers;
}

std::optional<wire::ModelOption> parseModel(const JSONValue& model) {
  const auto* id = stringMember(model, "id");
  if (!id) return std::nullopt;
  const auto* displayName = stringMember(model, "displayName");
  const auto* defaultEffort = stringMember(model, "defaultReasoningEffort");
  const auto* isDefault = model.member("isDefault");
  return wire::ModelOption{
      .id = *id,
      .displayName = displayName ? *displayName : *id,
      .efforts = parseEfforts(model),
      .defaultEffort = defaultEffort ? std::optional(*defaultEffort) : std::nullopt,
      .isDefault = isDefault != nullptr && isDefault->boolean() != nullptr && *isDefault->boolean(),
      .serviceTiers = parseTiers(model),
  };
}

}  // namespace

std::vector<wire::ModelOption> parseModels(const JSONValue& catalogue) {
  std::vector<wire::ModelOption> models;
  for (const auto& element : arrayMember(catalogue, "data")) {
    if (auto model = parseModel(element)) models.push_back(std::move(*model));
  }
  return models;
}

}  // namespace varnel::live
