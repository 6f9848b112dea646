// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/service/preferences.h"

#include <algorithm>

namespace varnel::service {

namespace {

std::unexpected<Failure> unknown(const char* what, const std::string& word) {
  return refuse(Failure::Kind::Invalid, std::string("The agent knows no ") + what + " \"" + word + "\".");
}

}  // namespace

Outcome<wire::ConversationPreferences> readPreferences(const wire::SettingsBody& body,
                                                       const std::vector<wire::ModelOption>& catalogue) {
  const auto mode = json::fromName<wire::CodexCollaborationMode>(body.mode);
  if (!mode) return unknown("mode", body.mode);
  const auto model = std::ranges::find(catalogue, body.model, &wire::ModelOption::id);
  if (model == catalogue.end()) return unknown("model", body.model);
  const bool isWithoutEffort = model->efforts.empty() && body.reasoningEffort.empty();
  if (!isWithoutEffort && std::ranges::find(model->efforts, body.reasoningEffort) == model->efforts.end()) {
    return unknown("effort", body.reasoningEffort);
  }
  wire::ConversationPreferences preferences{
      .mode = *mode, .model = body.model, .reasoningEffort = body.reasoningEffort, .serviceTier = std::nullopt};
  if (body.serviceTier == "default") return preferences;
  const auto& tiers = model->serviceTiers;
  if (std::ranges::find(tiers, body.serviceTier, &wire::ServiceTierOption::id) == tiers.end()) {
    return unknown("service tier", body.serviceTier);
  }
  preferences.serviceTier = body.serviceTier;
  return preferences;
}

wire::SettingsBody completed(const wire::NewSessionBody& body, const std::vector<wire::ModelOption>& catalogue) {
  wire::SettingsBody settings{.mode = body.mode, .model = "", .reasoningEffort = "", .serviceTier = "default"};
  auto model = std::ranges::find(catalogue, true, &wire::ModelOption::isDefault);
  if (model == catalogue.end()) model = catalogue.begin();
  if (body.model) model = std::ranges::find(catalogue, *body.model, &wire::ModelOption::id);
  settings.model = body.model.value_or(model == catalogue.end() ? "" : model->id);
  if (body.reasoningEffort) {
    settings.reasoningEffort = *body.reasoningEffort;
  } else if (model != catalogue.end()) {
    settings.reasoningEffort = model->defaultEffort.value_or(model->efforts.empty() ? "" : model->efforts.front());
  }
  return settings;
}

}  // namespace varnel::service
