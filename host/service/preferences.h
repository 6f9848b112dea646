// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/wire/bodies.h"
#include "core/wire/catalogue.h"
#include "core/wire/session.h"
#include "host/service/failure.h"

namespace varnel::service {

/// The preferences that a body names, each word known to the catalogue.
Outcome<wire::ConversationPreferences> readPreferences(const wire::SettingsBody& body,
                                                       const std::vector<wire::ModelOption>& catalogue);

/// A new session's preferences: what it leaves out is the catalogue's default.
wire::SettingsBody completed(const wire::NewSessionBody& body, const std::vector<wire::ModelOption>& catalogue);

}  // namespace varnel::service
