// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/subject.h"

namespace varnel::inspect {

std::optional<Converter> blocksConverter(const std::vector<std::string>& parameters);
std::optional<Converter> inlineConverter(const std::vector<std::string>& parameters);

}  // namespace varnel::inspect
