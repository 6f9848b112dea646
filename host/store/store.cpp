// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/store/store.h"

namespace varnel::store {

std::expected<std::unique_ptr<Store>, std::string> Store::open(const std::filesystem::path& database,
                                                               const std::filesystem::path& uploadFolder) {
  auto opened = Database::open(database);
  if (!opened) return std::unexpected(database.string() + ": " + opened.error());
  return std::make_unique<Store>(std::move(*opened), uploadFolder);
}

}  // namespace varnel::store
