// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/lists/record_list_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <random>

#include "core/wire/request.h"
#include "core/wire/session.h"

namespace varnel::lists {
namespace {

using testing::ElementsAre;
using wire::SessionSummary;

SessionSummary session(std::string id, std::string commentary = "") {
  SessionSummary summary;
  summary.id = std::move(id);
  summary.latestCommentary = std::move(commentary);
  return summary;
}

/// A model under the eyes of Qt's own checker, with everything it says counted.
class RecordListModelTest : public testing::Test {
 protected:
  RecordListModel<SessionSummary> model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
  QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
  QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
  QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
  QSignalSpy moved{&model, &QAbstractItemModel::rowsMoved};
  QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};

  void TearDown() override { EXPECT_EQ(resets.count(), 0); }

  void fill(std::vector<SessionSummary> records) {
    model.assign(std::move(records));
    for (auto* spy : {&inserted, &removed, &moved, &changed}) spy->clear();
  }

  [[nodiscard]] std::vector<std::string> ids() const {
    std::vector<std::string> result;
    for (int row = 0; row < model.rowCount(); ++row) result.push_back(value(row, "id").toString().toStdString());
    return result;
  }

  [[nodiscard]] int roleOf(const QByteArray& name) const { return model.roleNames().key(name, -1); }
  [[nodiscard]] QVariant value(int row, const QByteArray& role) const {
    return model.data(model.index(row), roleOf(role));
  }
};

TEST_F(RecordListModelTest, TheFirstLoadInsertsEverythingAtOnce) {
  model.assign({session("a"), session("b"), session("c")});
  EXPECT_THAT(ids(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(inserted.count(), 1);
}

TEST_F(RecordListModelTest, AReloadThatChangesOneRecordTouchesOneRowAndNamesItsRoles) {
  fill({session("a"), session("b"), session("c")});
  model.assign({session("a"), session("b", "working on it"), session("c")});
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
  EXPECT_EQ(changed[0][2].value<QList<int>>(), QList<int>{roleOf("latestCommentary")});
  EXPECT_EQ(inserted.count() + removed.count() + moved.count(), 0);
  EXPECT_EQ(value(1, "latestCommentary").toString(), "working on it");
}

TEST_F(RecordListModelTest, AReloadThatChangesNothingSaysNothing) {
  fill({session("a"), session("b")});
  model.assign({session("a"), session("b")});
  EXPECT_EQ(inserted.count() + removed.count() + moved.count() + changed.count(), 0);
}

TEST_F(RecordListModelTest, ARecordThatMovesAndChangesIsMovedAndChangedInPlace) {
  fill({session("a"), session("b"), session("c")});
  model.assign({session("c", "new"), session("a"), session("b")});
  EXPECT_THAT(ids(), ElementsAre("c", "a", "b"));
  EXPECT_EQ(moved.count(), 1);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 0);
  EXPECT_EQ(inserted.count() + removed.count(), 0);
}

TEST_F(RecordListModelTest, APersistentIndexFollowsItsRecord) {
  fill({session("a"), session("b"), session("c")});
  const QPersistentModelIndex index(model.index(1));
  model.assign({session("x"), session("c"), session("b"), session("y")});
  ASSERT_TRUE(index.isValid());
  EXPECT_EQ(index.row(), 2);
  model.assign({session("c")});
  EXPECT_FALSE(index.isValid());
}

TEST_F(RecordListModelTest, EqualIdentitiesAreToldApartByTheirOrder) {
  fill({session("a", "1"), session("b"), session("a", "2")});
  model.assign({session("a", "1"), session("a", "2"), session("b"), session("a", "3")});
  EXPECT_THAT(ids(), ElementsAre("a", "a", "b", "a"));
  EXPECT_EQ(value(1, "latestCommentary").toString(), "2");
  EXPECT_EQ(value(3, "latestCommentary").toString(), "3");
  model.assign({session("b"), session("a", "3")});
  EXPECT_THAT(ids(), ElementsAre("b", "a"));
}

TEST_F(RecordListModelTest, ASpliceTouchesTheRowsOfItsPlaceAlone) {
  fill({session("a"), session("b"), session("c"), session("d"), session("e")});
  model.splice(1, 3, {session("d"), session("x"), session("c", "new"), session("y")});
  EXPECT_THAT(ids(), ElementsAre("a", "d", "x", "c", "y", "e"));
  EXPECT_EQ(removed.count(), 1);
  EXPECT_EQ(moved.count(), 1);
  EXPECT_EQ(inserted.count(), 2);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 3);
  model.splice(6, 0, {session("z")});
  model.splice(0, 2, {});
  EXPECT_THAT(ids(), ElementsAre("x", "c", "y", "e", "z"));
}

TEST_F(RecordListModelTest, AnyReloadEndsAtTheNewRecords) {
  std::mt19937 random(7);  // NOLINT(cert-msc51-cpp): the same lists on every run
  for (int round = 0; round < 500; ++round) {
    std::vector<SessionSummary> records;
    for (auto count = random() % 10; count > 0; --count) {
      records.push_back(session(std::string(1, static_cast<char>('a' + random() % 8)), std::to_string(random() % 3)));
    }
    model.assign(records);
    ASSERT_EQ(model.records(), records) << "round " << round;
  }
}

TEST_F(RecordListModelTest, MembersHaveTheTypesQmlExpects) {
  auto record = session("a");
  record.state = wire::CodexTurnState::NeedsInput;
  record.active = true;
  record.updatedAt = 12.5;
  record.name = "Name";
  record.tokenUsage = wire::ConversationTokenUsage{};
  record.tokenUsage->contextTokens = 5'000'000'000;
  model.assign({record});
  EXPECT_EQ(value(0, "identity"), QVariant(QStringLiteral("a")));
  EXPECT_EQ(value(0, "state"), QVariant(QStringLiteral("needsInput")));
  EXPECT_EQ(value(0, "active"), QVariant(true));
  EXPECT_EQ(value(0, "updatedAt"), QVariant(12.5));
  EXPECT_EQ(value(0, "name"), QVariant(QStringLiteral("Name")));
  EXPECT_FALSE(value(0, "cwd").isValid());
  EXPECT_EQ(value(0, "tokenUsage").toMap().value("contextTokens"), QVariant(qint64{5'000'000'000}));
  EXPECT_FALSE(model.data(model.index(1), roleOf("id")).isValid());
}

TEST(RecordListModel, LooseJsonHasNoRoleYetIsKept) {
  RecordListModel<wire::PendingRequest> model;
  const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  wire::PendingRequest request;
  request.id = "r";
  model.assign({request});
  EXPECT_EQ(model.roleNames().key("params", -1), -1);
  request.params.emplace("command", "ls");
  model.assign({request});
  EXPECT_EQ(model.records().at(0), request);
}

}  // namespace
}  // namespace varnel::lists
