// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "core/json/value.h"
#include "core/wire/catalogue.h"
#include "core/wire/session.h"
#include "host/agent/agent.h"

/// Models, projects and the words for settings that the demo agent takes.
namespace varnel::agent::demo {

/// `{"data": [...]}` as the agent lists its models.
const json::JSONValue& modelCatalogue();
const std::vector<wire::ProjectRecord>& projectList();

/// The catalogue's default model with its default effort.
wire::ConversationPreferences defaultPreferences();

/// Takes an empty model or effort from `before` (the effort from the model when that is another one) and the tier
/// "default" for none; Invalid, naming the value, when the catalogue does not have it.
Result<wire::ConversationPreferences> settle(wire::ConversationPreferences preferences,
                                             const wire::ConversationPreferences& before);

/// The conversation's name when it has one, else the base name of where it works.
std::string projectOf(const wire::SessionSummary& summary);

}  // namespace varnel::agent::demo
