// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <string>

#include "host/store/agent_memory.h"
#include "host/store/answers.h"
#include "host/store/database.h"
#include "host/store/devices.h"
#include "host/store/event_log.h"
#include "host/store/queue.h"
#include "host/store/search_index.h"
#include "host/store/tracking.h"
#include "host/store/uploads.h"

namespace varnel::store {

/// Everything the bridge remembers, over one connection. Used on the bridge's one thread.
class Store {
 public:
  /// `database` may be ":memory:"; uploaded files go into `uploadFolder`, which exists.
  static std::expected<std::unique_ptr<Store>, std::string> open(const std::filesystem::path& database,
                                                                 const std::filesystem::path& uploadFolder);

 private:
  Database m_database;

 public:
  Devices devices{m_database};
  EventLog events{m_database};
  Tracking tracking{m_database};
  Uploads uploads{m_database};
  Answers answers{m_database};
  Queue queue{m_database};
  SearchIndex search{m_database};
  AgentMemory agentMemory{m_database};
  const std::filesystem::path uploadFolder;

  [[nodiscard]] const Database& database() const { return m_database; }

  Store(Database database, std::filesystem::path folder)
      : m_database(std::move(database)), uploadFolder(std::move(folder)) {}
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
};

}  // namespace varnel::store
