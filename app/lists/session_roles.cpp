// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/record_roles.h"
#include "core/wire/session_fields.h"

template const std::vector<varnel::lists::Role<varnel::wire::SessionSummary>>&
varnel::lists::rolesOf<varnel::wire::SessionSummary>();
