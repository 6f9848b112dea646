// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/instantiate.h"
#include "core/wire/session_fields.h"

namespace varnel::wire {

VARNEL_RECORD(ConversationPreferences)
VARNEL_RECORD(ConversationPlanStep)
VARNEL_RECORD(ConversationPlan)
VARNEL_RECORD(ConversationTokenUsage)
VARNEL_RECORD(SessionSummary)
VARNEL_RECORD(SessionsEnvelope)

template std::expected<PreferencesBySession, json::DecodeError> decode<PreferencesBySession>(std::string_view);
template std::expected<std::string, json::DecodeError> encode<PreferencesBySession>(const PreferencesBySession&);

}  // namespace varnel::wire
