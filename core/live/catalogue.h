// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "core/json/value.h"
#include "core/wire/catalogue.h"

namespace varnel::live {

/// The models in the loose answer of the models operation, in its order. What does not fit is left out: never fails.
std::vector<wire::ModelOption> parseModels(const json::JSONValue& catalogue);

}  // namespace varnel::live
