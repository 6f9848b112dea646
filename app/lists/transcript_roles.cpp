// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/record_roles.h"
#include "core/wire/request_fields.h"
#include "core/wire/transcript_fields.h"

template const std::vector<varnel::lists::Role<varnel::wire::TranscriptItem>>&
varnel::lists::rolesOf<varnel::wire::TranscriptItem>();
template const std::vector<varnel::lists::Role<varnel::wire::PendingRequest>>&
varnel::lists::rolesOf<varnel::wire::PendingRequest>();
