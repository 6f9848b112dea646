// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/wire/session.h"
#include "core/wire/transcript.h"

namespace varnel::model {

class AppModel;

/// What was last known of the conversations, kept in files of this user alone, to be read while the bridge cannot be
/// reached. Stands beside the model: the model's fields are never filled from it. Goes with the pairing.
///
/// Main thread; files are written by a thread of its own, some seconds after a change, and by the destructor.
class OfflineCache : public QObject {
  Q_OBJECT

 public:
  /// The folder belongs to the cache; it is made when there is something to keep.
  OfflineCache(AppModel& model, std::filesystem::path directory, QObject* parent = nullptr);
  ~OfflineCache() override;

  /// Whether to show it: the model has no conversations, and nothing has been heard of the bridge in this run.
  [[nodiscard]] bool isWanted() const;
  /// The list of the last run. Empty when there is none that can be read.
  [[nodiscard]] const std::vector<wire::SessionSummary>& sessions() const { return m_sessions; }
  /// The end of a conversation that was open in an earlier run.
  [[nodiscard]] std::vector<wire::TranscriptItem> transcript(const std::string& sessionId) const;
  /// Writes what is due now.
  void flush();

 private:
  [[nodiscard]] std::filesystem::path fileOf(const std::string& sessionId) const;
  void clear();
  void write(std::filesystem::path file, std::string bytes);
  void removeForgotten();

  AppModel& m_model;
  std::filesystem::path m_directory;
  std::vector<wire::SessionSummary> m_sessions;
  QTimer m_due;
  bool m_listChanged = false;
  std::set<std::string> m_changed;  ///< conversations
  QThreadPool m_writer;             ///< one thread, so that writes and the removal keep their order
};

}  // namespace varnel::model
