// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "app/model/app_model.h"
#include "core/json/value.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

/// Starts a verb of the model by its name, or an operation of its client, as a screen would. The outcome is the JSON
/// of what it returns, or why it was not started.
QCoro::Task<Outcome> startVerb(model::AppModel& model, const std::string& name, json::JSONValue arguments);

/// For the usage: a line a verb.
std::string verbList();

}  // namespace varnel::inspect
