// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

class Lifecycle : public ModelTest {};

TEST_F(Lifecycle, ConstructionTakesThePairingAndAsksTheBridgeForNothing) {
  makePaired();
  settle();
  EXPECT_EQ(model->credentials(), credentials());
  EXPECT_FALSE(model->isStarted());
  EXPECT_FALSE(model->isConnected());
  EXPECT_FALSE(model->lastContact());
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(Lifecycle, StartingUnpairedDoesNothingAndStaysPossible) {
  makeUnpaired();
  model->start();
  await(model->refresh(true));
  settle();
  EXPECT_FALSE(model->isStarted());
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(Lifecycle, StartingTwiceOpensOneStreamAndRefreshesOnce) {
  makePaired();
  expectStream(0);
  expectFullRefresh();
  model->start();
  model->start();
  ASSERT_TRUE(spinUntil([this] { return bridge.openStreams() == 1 && model->usage() && !model->models().empty(); }));
  model->start();
  settle();
  EXPECT_THAT(requests(), UnorderedElementsAre("GET " + streamTarget(0), "GET /v1/usage", "GET /v1/sessions",
                                               "GET /v1/projects", "GET /v1/models"));
}

TEST_F(Lifecycle, StoppingClosesTheStreamAtOnceAndKeepsWhatWasLoaded) {
  makeConnected();
  model->stop();
  EXPECT_THAT(log, ElementsAre("disconnected"));
  EXPECT_FALSE(model->isStarted());
  EXPECT_TRUE(spinUntil([this] { return bridge.openStreams() == 0; }));
  settle();
  EXPECT_THAT(log, ElementsAre("disconnected"));
  EXPECT_THAT(clock->sleeps, IsEmpty());
  EXPECT_EQ(model->sessions().size(), 1U);
}

TEST_F(Lifecycle, StoppingAndStartingInOneGoLeavesOneStreamAndConnected) {
  makeConnected();
  bridge.inject(answers::event(4, "unknown"));
  ASSERT_TRUE(spinUntil([this] { return model->lastSequence() == 4; }));
  expectStream(4);
  expectFullRefresh();
  model->stop();
  model->start();
  ASSERT_TRUE(spinUntil([this] { return requests().size() == 5 && model->isConnected(); }));
  settle();
  EXPECT_EQ(bridge.openStreams(), 1);
  EXPECT_TRUE(model->isConnected());
  EXPECT_FALSE(seen("sessions")) << "the same answer is no change";
}

TEST_F(Lifecycle, OnlyRealFailuresAreShownAndTheLastOneStands) {
  makePaired();
  model->report(client::ClientError(client::Cancelled{}));
  EXPECT_FALSE(model->hasErrorMessage());
  model->report(client::ClientError(client::APIError{client::APIError::Kind::Server, 500, "Out of tea"}));
  model->report(QStringLiteral("Second"));
  EXPECT_EQ(model->errorText(), QStringLiteral("Second"));
  model->clearErrorMessage();
  EXPECT_FALSE(model->hasErrorMessage());
  EXPECT_THAT(log, ElementsAre("error Out of tea", "error Second", "error "));

  model->report(QString(2'000, u'x'));
  EXPECT_EQ(model->errorText(), QString(2'000, u'x'));
  model->report(QString(50'000, u'x'));
  EXPECT_EQ(model->errorText(), QString(1'999, u'x') + QChar(u'…')) << "what fits an alert";
}

}  // namespace
}  // namespace varnel::model
