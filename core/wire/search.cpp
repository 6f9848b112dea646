// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/wire/instantiate.h"
#include "core/wire/search_fields.h"

namespace varnel::wire {

VARNEL_RECORD(ArchivedSession)
VARNEL_RECORD(ArchivedSessionsEnvelope)
VARNEL_RECORD(SearchThread)
VARNEL_RECORD(SearchOccurrence)
VARNEL_RECORD(ConversationSearchResult)
VARNEL_RECORD(SearchEnvelope)

}  // namespace varnel::wire
