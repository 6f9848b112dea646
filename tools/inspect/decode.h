// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/inspect/subject.h"

namespace varnel::inspect {

std::optional<Converter> decodeConverter(const std::vector<std::string>& parameters);
/// A catalogue of models as the application reads it.
std::optional<Converter> modelsConverter(const std::vector<std::string>& parameters);
std::optional<Converter> prettyConverter(const std::vector<std::string>& parameters);

/// For the usage: each name after a blank.
std::string recordNames();

}  // namespace varnel::inspect
