// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include "app/lists/record_list_model.h"
#include "core/wire/search.h"

namespace varnel::model {
class AppModel;
}

namespace varnel::screens {

/// One conversation that the search found, as it is shown.
struct SearchRow {
  QString sessionId;
  QString title;
  QString snippet;
  bool archived = false;
  QString spoken;

  [[nodiscard]] const QString& identity() const { return sessionId; }
  bool operator==(const SearchRow&) const = default;
};
SearchRow makeSearchRow(const wire::ConversationSearchResult& result);

/// The search over all conversations: its text, asked for when the typing rests, and what was found.
class ConversationSearch : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("made by the application")
  Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
  Q_PROPERTY(bool shown READ isShown NOTIFY textChanged)
  Q_PROPERTY(bool searching READ isSearching NOTIFY changed)
  Q_PROPERTY(bool empty READ isEmpty NOTIFY changed)
  Q_PROPERTY(bool hasMore READ hasMore NOTIFY changed)
  Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY textChanged)
  Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)

 public:
  explicit ConversationSearch(model::AppModel& model, QObject* parent = nullptr);

  [[nodiscard]] QString text() const { return m_text; }
  void setText(const QString& text);
  /// The results stand in the place of the list: as soon as there is any text, a blank too.
  [[nodiscard]] bool isShown() const { return !m_text.isEmpty(); }
  [[nodiscard]] bool isSearching() const;
  /// Nothing was found.
  [[nodiscard]] bool isEmpty() const;
  [[nodiscard]] bool hasMore() const;
  [[nodiscard]] QString emptyTitle() const;
  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }

  Q_INVOKABLE void loadMore();
  /// Opens what was found in that row at the place where it was found.
  Q_INVOKABLE void open(int row);

 signals:
  void textChanged();
  void changed();
  void opened(const QString& sessionId);

 private:
  void updateRows();

  model::AppModel& m_model;
  QString m_text;
  QTimer m_rest;  ///< runs since the last change of the text
  lists::RecordListModel<SearchRow> m_rows;
};

}  // namespace varnel::screens
