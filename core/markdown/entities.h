// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::markdown {

/// What an entity of HTML 5 stands for, by its name without "&" and ";".
std::optional<std::string> namedEntity(std::string_view name);

}  // namespace varnel::markdown
