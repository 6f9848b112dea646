// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/catalogue.h"

#include <algorithm>
#include <stdexcept>

#include "core/json/text.h"
#include "core/wire/codec.h"
#include "host/agent/demo/content.h"

namespace varnel::agent::demo {

using json::JSONValue;

namespace {

std::string_view contentOf(std::string_view name) {
  const auto files = contentFiles();
  const auto file = std::ranges::find(files, name, &ContentFile::name);
  if (file == files.end()) throw std::logic_error("no such content: " + std::string(name));
  return file->text;
}

std::string text(const JSONValue& object, std::string_view name) {
  const JSONValue* member = object.member(name);
  return member != nullptr && member->string() != nullptr ? *member->string() : std::string();
}

const JSONValue::Array& list(const JSONValue& object, std::string_view name) {
  static const JSONValue::Array kNone;
  const JSONValue* member = object.member(name);
  return member != nullptr && member->array() != nullptr ? *member->array() : kNone;
}

/// The model of that id, the default one for an empty id, null when there is none.
const JSONValue* findModel(const std::string& id) {
  const auto& models = list(modelCatalogue(), "data");
  const auto found = std::ranges::find_if(models, [&](const JSONValue& model) {
    const JSONValue* isDefault = model.member("isDefault");
    return id.empty() ? isDefault != nullptr && *isDefault == JSONValue(true) : text(model, "id") == id;
  });
  return found == models.end() ? nullptr : &*found;
}

bool offers(const JSONValue& model, std::string_view members, std::string_view key, const std::string& word) {
  return std::ranges::any_of(list(model, members), [&](const JSONValue& entry) { return text(entry, key) == word; });
}

std::unexpected<AgentError> unknown(const std::string& what, const std::string& word) {
  return std::unexpected(AgentError{AgentError::Kind::Invalid, "The agent knows no " + what + " \"" + word + "\"."});
}

}  // namespace

const JSONValue& modelCatalogue() {
  static const JSONValue kCatalogue = [] {
    auto parsed = json::parse(contentOf("models.json"));
    if (!parsed) throw std::logic_error("models.json: " + parsed.error().message());
    return *std::move(parsed);
  }();
  return kCatalogue;
}

const std::vector<wire::ProjectRecord>& projectList() {
  static const std::vector<wire::ProjectRecord> kProjects = [] {
    auto decoded = wire::decode<wire::ProjectsEnvelope>(contentOf("projects.json"));
    if (!decoded) throw std::logic_error("projects.json: " + decoded.error().message());
    return std::move(decoded->projects);
  }();
  return kProjects;
}

wire::ConversationPreferences defaultPreferences() {
  const JSONValue& model = *findModel({});
  return {.mode = wire::CodexCollaborationMode::Default,
          .model = text(model, "id"),
          .reasoningEffort = text(model, "defaultReasoningEffort"),
          .serviceTier = std::nullopt};
}

Result<wire::ConversationPreferences> settle(wire::ConversationPreferences preferences,
                                             const wire::ConversationPreferences& before) {
  if (preferences.model.empty()) preferences.model = before.model;
  if (preferences.reasoningEffort.empty() && preferences.model == before.model) {
    preferences.reasoningEffort = before.reasoningEffort;
  }
  const JSONValue* model = findModel(preferences.model);
  if (model == nullptr) return unknown("model", preferences.model);
  preferences.model = text(*model, "id");
  if (preferences.reasoningEffort.empty()) preferences.reasoningEffort = text(*model, "defaultReasoningEffort");
  if (!offers(*model, "supportedReasoningEfforts", "reasoningEffort", preferences.reasoningEffort)) {
    return unknown("reasoning effort", preferences.reasoningEffort);
  }
  if (preferences.serviceTier == "default" || preferences.serviceTier == "") preferences.serviceTier.reset();
  if (preferences.serviceTier && !offers(*model, "serviceTiers", "id", *preferences.serviceTier)) {
    return unknown("service tier", *preferences.serviceTier);
  }
  return preferences;
}

std::string projectOf(const wire::SessionSummary& summary) {
  if (summary.name && !summary.name->empty()) return *summary.name;
  std::string path = summary.cwd.value_or("");
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

}  // namespace varnel::agent::demo
