// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <boost/describe/class.hpp>

#include "core/wire/search.h"

namespace varnel::wire {

BOOST_DESCRIBE_STRUCT(ArchivedSession, (), (id, name, cwd, updatedAt))
BOOST_DESCRIBE_STRUCT(ArchivedSessionsEnvelope, (), (data, nextCursor))
BOOST_DESCRIBE_STRUCT(SearchThread, (), (id, name, cwd, updatedAt, archived))
BOOST_DESCRIBE_STRUCT(SearchOccurrence, (), (itemId, snippet, turnId, turnCursor))
BOOST_DESCRIBE_STRUCT(ConversationSearchResult, (), (snippet, thread, occurrences))
BOOST_DESCRIBE_STRUCT(SearchEnvelope, (), (data, nextCursor))

}  // namespace varnel::wire
