// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tools/inspect/subject.h"

namespace varnel::inspect {

std::optional<Converter> cardConverter(const std::vector<std::string>& parameters);

}  // namespace varnel::inspect
