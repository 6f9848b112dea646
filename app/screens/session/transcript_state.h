// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QCoroTask>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <optional>
#include <string>
#include <vector>

#include "app/lists/record_list_model.h"
#include "app/screens/session/transcript_row.h"
#include "core/transcript/scroll_target.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// What was said in the open conversation: the rows, where they are scrolled to when it is opened and when it grows,
/// and how far it was read. Marks the conversation read when it goes.
class TranscriptState : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
  Q_PROPERTY(bool loading READ isLoading NOTIFY loadingChanged)
  Q_PROPERTY(bool jumping READ isJumping NOTIFY jumpingChanged)
  Q_PROPERTY(int lastVisibleRow READ lastVisibleRow WRITE setLastVisibleRow NOTIFY repliesBelowChanged)
  Q_PROPERTY(int repliesBelow READ repliesBelow NOTIFY repliesBelowChanged)

 public:
  enum class Alignment { Top, Center, Bottom };
  Q_ENUM(Alignment)

  TranscriptState(model::AppModel& model, std::string sessionId, QObject* parent);
  ~TranscriptState() override;

  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  /// Nothing of the conversation is here yet and it is being fetched.
  [[nodiscard]] bool isLoading() const;
  /// A scroll is about to be asked for: the view must not go anywhere by itself.
  [[nodiscard]] bool isJumping() const { return m_jumps > 0; }
  [[nodiscard]] int lastVisibleRow() const { return m_lastVisibleRow; }
  void setLastVisibleRow(int row);
  /// How many of the agent's messages lie wholly below what is seen.
  [[nodiscard]] int repliesBelow() const { return m_repliesBelow; }

  /// Folds or unfolds a group of tools.
  Q_INVOKABLE void toggleGroup(const QString& rowId);

 signals:
  void loadingChanged();
  void jumpingChanged();
  void repliesBelowChanged();
  /// The view is to bring this row to that place, at once or gliding.
  void scrollRequested(int row, varnel::screens::TranscriptState::Alignment alignment, bool animated);

 private:
  QCoro::Task<> open();
  void finishOpening(const std::optional<std::string>& lastRead);
  void update();
  void followChange();
  void scrollTo(const std::optional<transcript::ScrollTarget>& target, bool animated);
  void countReplies();
  void markRead();
  void setJumps(int jumps);

  model::AppModel& m_model;
  std::string m_sessionId;
  lists::RecordListModel<TranscriptRow> m_rows;
  RowIDs m_expanded;
  transcript::ItemIDs m_knownItemIDs;
  std::vector<std::string> m_itemIDs;  ///< in their order, as they were when they were last looked at
  bool m_didInitialScroll = false;
  bool m_loaded = false;  ///< the first load has ended, well or not
  int m_jumps = 0;
  int m_lastVisibleRow = -1;
  int m_repliesBelow = 0;
};

}  // namespace varnel::screens
