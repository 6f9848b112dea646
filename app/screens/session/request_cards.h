// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QObject>
#include <functional>
#include <string>
#include <vector>

#include "app/lists/record_list_model.h"
#include "app/screens/session/pending_request_card_state.h"

namespace varnel::screens {

struct RequestCardRow {
  std::string requestId;
  PendingRequestCardState* card = nullptr;  ///< owned by the list it stands in

  [[nodiscard]] const std::string& identity() const { return requestId; }
  bool operator==(const RequestCardRow&) const = default;
};

/// The requests of a conversation that wait for an answer, in their order, each with what the reader has unfolded,
/// chosen and typed in it for as long as it waits.
class RequestCards : public QObject {
  Q_OBJECT

 public:
  using MakeCard = std::function<PendingRequestCardState*(wire::PendingRequest)>;
  explicit RequestCards(MakeCard makeCard, QObject* parent);

  [[nodiscard]] QAbstractItemModel* rows() { return &m_rows; }
  [[nodiscard]] int count() const { return m_rows.rowCount(); }
  void update(const std::vector<wire::PendingRequest>& requests);

 signals:
  void countChanged();

 private:
  MakeCard m_makeCard;
  lists::RecordListModel<RequestCardRow> m_rows;
};

}  // namespace varnel::screens
