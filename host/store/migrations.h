// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>

namespace varnel::store {

class Database;

/// Applies the numbered steps that the file has not seen, each in a transaction of its own; a new file runs them all.
/// Steps are never changed once released, only added. Refuses a file written by a newer version.
std::expected<void, std::string> migrate(const Database& database);

}  // namespace varnel::store
