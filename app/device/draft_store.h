// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/platform/defaults_store.h"
#include "core/wire/catalogue.h"

namespace varnel::device {

/// What is written and attached for a conversation and not sent yet.
struct Draft {
  std::string text;
  std::vector<wire::UploadedAttachment> attachments;
  bool goal = false;

  /// A blank text alone is worth nothing.
  [[nodiscard]] bool isEmpty() const;
  bool operator==(const Draft&) const = default;
};

/// The drafts of all conversations, kept beside the other defaults: what `set` has taken is there after a kill. One
/// that cannot be stored (a full disk) lives as long as the program. Main thread only.
class DraftStore : public QObject {
  Q_OBJECT

 public:
  static constexpr const char* kKey = "Varnel.Drafts";

  explicit DraftStore(platform::DefaultsStore& defaults, QObject* parent = nullptr);

  /// An empty one when there is none.
  [[nodiscard]] Draft draft(std::string_view sessionId) const;
  /// An empty draft removes what is there.
  void set(const std::string& sessionId, Draft draft);
  void clear();

 signals:
  void draftChanged(const std::string& sessionId);

 private:
  void save();

  platform::DefaultsStore& m_defaults;
  std::map<std::string, Draft, std::less<>> m_drafts;
};

}  // namespace varnel::device
