// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/record_roles.h"
#include "core/wire/catalogue_fields.h"

template const std::vector<varnel::lists::Role<varnel::wire::ProjectRecord>>&
varnel::lists::rolesOf<varnel::wire::ProjectRecord>();
template const std::vector<varnel::lists::Role<varnel::wire::ModelOption>>&
varnel::lists::rolesOf<varnel::wire::ModelOption>();
