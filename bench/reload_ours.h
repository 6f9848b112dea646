// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "app/lists/record_list_model.h"
#include "core/transcript/reconcile.h"
#include "core/transcript/row_fold.h"
#include "core/wire/session_detail.h"

/// A conversation that is kept up to date the way an application does it: from the body of an answer to the rows of a
/// list that QML would show.
namespace varnel::bench {

/// A row of the conversation screen: a message, or how many things the agent did.
struct ReloadRow {
  QString id;
  QString text;
  int count = 1;

  [[nodiscard]] const QString& identity() const { return id; }
  bool operator==(const ReloadRow&) const = default;
};

class Conversation {
 public:
  Conversation();

  /// Throws when the body is not a good answer. What is needed no more is kept until `forget`: giving an answer's
  /// memory back is work of whoever fetches answers, whatever they do with them.
  void reload(std::string body);
  void forget() { m_former = nullptr; }
  /// The part behind decoding.
  void apply(transcript::ServerChange change);

  [[nodiscard]] const std::string& text() const { return *m_text->text; }
  [[nodiscard]] const std::vector<wire::TranscriptItem>& items() const { return m_items; }
  [[nodiscard]] const lists::RecordListModel<ReloadRow>& rows() const { return m_rows; }
  /// How many rows were inserted, removed, moved or changed so far.
  [[nodiscard]] std::size_t touched() const { return m_touched; }

 private:
  [[nodiscard]] ReloadRow rowFrom(const transcript::RowFold::Row& row) const;

  std::shared_ptr<const wire::SessionText> m_text;
  std::shared_ptr<const wire::SessionText> m_former;
  std::vector<wire::TranscriptItem> m_items;
  std::vector<wire::TranscriptItem> m_optimistic;
  transcript::RowFold m_fold;
  lists::RecordListModel<ReloadRow> m_rows;
  std::size_t m_touched = 0;
};

}  // namespace varnel::bench
