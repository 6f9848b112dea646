// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/request_cards.h"

#include <algorithm>
#include <boost/describe/class.hpp>
#include <utility>

#include "app/lists/record_roles.h"

namespace varnel::screens {

BOOST_DESCRIBE_STRUCT(RequestCardRow, (), (requestId, card))

RequestCards::RequestCards(MakeCard makeCard, QObject* parent) : QObject(parent), m_makeCard(std::move(makeCard)) {}

void RequestCards::update(const std::vector<wire::PendingRequest>& requests) {
  std::vector<RequestCardRow> former = m_rows.records();
  std::vector<RequestCardRow> rows;
  for (const wire::PendingRequest& request : requests) {
    if (request.resolved) continue;
    const auto known = std::ranges::find(former, request.id, &RequestCardRow::requestId);
    if (known == former.end()) {
      rows.push_back({.requestId = request.id, .card = m_makeCard(request)});
      continue;
    }
    known->card->setRequest(request);
    rows.push_back(*known);
    former.erase(known);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i].card->setPosition(static_cast<int>(i) + 1, static_cast<int>(rows.size()));
  }
  const int before = count();
  m_rows.assign(std::move(rows));
  // Only now: until then the view reads them.
  for (const RequestCardRow& gone : former) gone.card->deleteLater();
  if (count() != before) emit countChanged();
}

}  // namespace varnel::screens

template const std::vector<varnel::lists::Role<varnel::screens::RequestCardRow>>&
varnel::lists::rolesOf<varnel::screens::RequestCardRow>();
