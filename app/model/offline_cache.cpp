// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/model/offline_cache.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <system_error>
#include <utility>

#include "app/model/app_model.h"
#include "app/platform/atomic_file.h"
#include "core/base/percent_encoding.h"
#include "core/wire/codec.h"

namespace varnel::model {
namespace {

constexpr std::chrono::seconds kWrittenAfter{3};
constexpr std::ptrdiff_t kItemsKept = 200;
constexpr std::size_t kLargestFile = std::size_t{8} << 20;

template <class Record>
std::vector<Record> readList(const std::filesystem::path& file) {
  const auto content = platform::readPrivateFile(file, kLargestFile);
  if (!content || !*content) return {};
  return wire::decode<std::vector<Record>>(**content).value_or(std::vector<Record>());
}

/// The last items, without those that the bridge does not know yet.
std::vector<wire::TranscriptItem> endOf(const std::vector<wire::TranscriptItem>& items) {
  std::vector<wire::TranscriptItem> kept;
  std::ranges::copy_if(items, std::back_inserter(kept),
                       [](const auto& item) { return !item.id.starts_with("optimistic-"); });
  if (std::ssize(kept) > kItemsKept) kept.erase(kept.begin(), kept.end() - kItemsKept);
  return kept;
}

}  // namespace

OfflineCache::OfflineCache(AppModel& model, std::filesystem::path directory, QObject* parent)
    : QObject(parent), m_model(model), m_directory(std::move(directory)) {
  m_writer.setMaxThreadCount(1);
  m_due.setSingleShot(true);
  m_due.setInterval(kWrittenAfter);
  connect(&m_due, &QTimer::timeout, this, &OfflineCache::flush);
  connect(&model, &AppModel::sessionsChanged, this, [this] {
    m_listChanged = true;
    m_due.start();
  });
  connect(&model, &AppModel::transcriptChanged, this, [this](const std::string& sessionId) {
    m_changed.insert(sessionId);
    m_due.start();
  });
  connect(&model, &AppModel::credentialsChanged, this, [this] {
    if (!m_model.isPaired()) clear();
  });
  if (m_model.isPaired()) {
    m_sessions = readList<wire::SessionSummary>(m_directory / "sessions.json");
  } else {
    clear();
  }
}

OfflineCache::~OfflineCache() {
  flush();
  m_writer.waitForDone();
}

bool OfflineCache::isWanted() const {
  return m_model.isPaired() && m_model.sessions().empty() && !m_model.lastContact();
}

std::filesystem::path OfflineCache::fileOf(const std::string& sessionId) const {
  return m_directory / ("transcript-" + base::percentEncode(sessionId, base::UrlSet::Unreserved) + ".json");
}

std::vector<wire::TranscriptItem> OfflineCache::transcript(const std::string& sessionId) const {
  return readList<wire::TranscriptItem>(fileOf(sessionId));
}

void OfflineCache::flush() {
  m_due.stop();
  const bool listChanged = std::exchange(m_listChanged, false);
  const auto changed = std::exchange(m_changed, {});
  if (!m_model.isPaired()) return;
  if (listChanged) {
    if (auto bytes = wire::encode(m_model.sessions())) write(m_directory / "sessions.json", *std::move(bytes));
    removeForgotten();
  }
  for (const auto& sessionId : changed) {
    if (auto bytes = wire::encode(endOf(m_model.transcript(sessionId)))) write(fileOf(sessionId), *std::move(bytes));
  }
}

// A copy that cannot be written is one that will not be there: nobody needs to hear of it.
void OfflineCache::write(std::filesystem::path file, std::string bytes) {
  m_writer.start([directory = m_directory, path = std::move(file), content = std::move(bytes)] {
    if (platform::makePrivateDirectory(directory)) static_cast<void>(platform::replaceFile(path, content));
  });
}

/// Conversations that are no longer listed.
void OfflineCache::removeForgotten() {
  std::set<std::filesystem::path> kept{m_directory / "sessions.json"};
  for (const auto& session : m_model.sessions()) kept.insert(fileOf(session.id));
  m_writer.start([directory = m_directory, files = std::move(kept)] {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(directory, error)) {
      if (!files.contains(entry.path())) static_cast<void>(platform::removeFile(entry.path()));
    }
  });
}

void OfflineCache::clear() {
  m_due.stop();
  m_listChanged = false;
  m_changed.clear();
  m_sessions.clear();
  m_writer.start([directory = m_directory] {
    std::error_code error;
    std::filesystem::remove_all(directory, error);
  });
}

}  // namespace varnel::model
