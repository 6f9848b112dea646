// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/session/transcript_state.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <algorithm>
#include <utility>

#include "app/model/app_model.h"

namespace varnel::screens {
namespace {

std::vector<std::string> orderedIds(const std::vector<wire::TranscriptItem>& items) {
  std::vector<std::string> ids;
  ids.reserve(items.size());
  for (const auto& item : items) ids.push_back(item.id);
  return ids;
}

TranscriptState::Alignment shown(transcript::ScrollTarget::Alignment alignment) {
  using enum transcript::ScrollTarget::Alignment;
  switch (alignment) {
    case Top:
      return TranscriptState::Alignment::Top;
    case Center:
      return TranscriptState::Alignment::Center;
    case Bottom:
      break;
  }
  return TranscriptState::Alignment::Bottom;
}

}  // namespace

TranscriptState::TranscriptState(model::AppModel& model, std::string sessionId, QObject* parent)
    : QObject(parent), m_model(model), m_sessionId(std::move(sessionId)) {
  connect(&model, &model::AppModel::transcriptChanged, this, [this](const std::string& id) {
    if (id == m_sessionId) update();
  });
  update();
  open();
}

TranscriptState::~TranscriptState() {
  markRead();
}

bool TranscriptState::isLoading() const {
  return !m_loaded && m_model.transcript(m_sessionId).empty();
}

void TranscriptState::setLastVisibleRow(int row) {
  if (m_lastVisibleRow == row) return;
  m_lastVisibleRow = row;
  countReplies();
}

void TranscriptState::toggleGroup(const QString& rowId) {
  const std::string id = rowId.toStdString();
  if (m_expanded.erase(id) == 0) m_expanded.insert(id);
  m_rows.assign(makeTranscriptRows(m_model.transcript(m_sessionId), m_expanded));
}

QCoro::Task<> TranscriptState::open() {
  const QPointer self(this);
  const auto lastRead = m_model.lastReadItemID(m_sessionId);
  co_await m_model.loadSession(m_sessionId);
  if (!self) co_return;
  m_loaded = true;
  m_itemIDs = orderedIds(m_model.transcript(m_sessionId));
  m_knownItemIDs = transcript::idsOf(m_model.transcript(m_sessionId));
  m_didInitialScroll = true;
  emit loadingChanged();
  setJumps(m_jumps + 1);
  QTimer::singleShot(0, this, [this, lastRead] { finishOpening(lastRead); });
}

void TranscriptState::finishOpening(const std::optional<std::string>& lastRead) {
  const auto opening =
      transcript::openingOf(m_model.transcript(m_sessionId), m_model.selectedTranscriptItemId(), lastRead);
  scrollTo(opening.target, false);
  if (opening.selectedFound) m_model.selectTranscriptItem(std::nullopt);
  markRead();
}

void TranscriptState::update() {
  const auto& items = m_model.transcript(m_sessionId);
  const bool wasLoading = isLoading();
  auto ids = orderedIds(items);
  // Before the rows change, so that the view knows whether to stay where it is.
  if (m_didInitialScroll && ids != m_itemIDs) followChange();
  m_itemIDs = std::move(ids);
  m_rows.assign(makeTranscriptRows(items, m_expanded));
  countReplies();
  if (wasLoading != isLoading()) emit loadingChanged();
}

void TranscriptState::followChange() {
  const auto& items = m_model.transcript(m_sessionId);
  const auto target = transcript::targetOfChange(items, m_knownItemIDs);
  m_knownItemIDs = transcript::idsOf(items);
  if (!target) return;
  setJumps(m_jumps + 1);
  QTimer::singleShot(0, this, [this, target] {
    scrollTo(target, true);
    markRead();
  });
}

void TranscriptState::scrollTo(const std::optional<transcript::ScrollTarget>& target, bool animated) {
  setJumps(m_jumps - 1);
  if (!target) return;
  const auto& records = m_rows.records();
  const auto row = std::ranges::find(records, target->rowId, &TranscriptRow::rowId);
  if (row == records.end()) return;
  emit scrollRequested(static_cast<int>(row - records.begin()), shown(target->alignment), animated);
}

void TranscriptState::countReplies() {
  const auto& records = m_rows.records();
  const auto below = std::min(static_cast<std::size_t>(m_lastVisibleRow + 1), records.size());
  const auto count =
      static_cast<int>(std::count_if(records.begin() + static_cast<std::ptrdiff_t>(below), records.end(),
                                     [](const TranscriptRow& row) { return row.kind == "message" && !row.fromUser; }));
  if (count == m_repliesBelow) return;
  m_repliesBelow = count;
  emit repliesBelowChanged();
}

void TranscriptState::markRead() {
  const auto& items = m_model.transcript(m_sessionId);
  m_model.markRead(m_sessionId, items.empty() ? std::nullopt : std::optional(items.back().id));
}

void TranscriptState::setJumps(int jumps) {
  m_jumps = jumps;
  emit jumpingChanged();
}

}  // namespace varnel::screens
