// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/subject.h"

namespace varnel::inspect {

std::optional<Converter> rowsConverter(const std::vector<std::string>& parameters);
std::optional<Converter> unreadConverter(const std::vector<std::string>& parameters);
std::optional<Converter> reconcileConverter(const std::vector<std::string>& parameters);

}  // namespace varnel::inspect
