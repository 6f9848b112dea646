// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace {

/// Destroys the model wherever it may be suspended. What is proved is that nothing touches it afterwards: the address
/// sanitizer is the judge, and a crash without it.
class Teardown : public ModelTest {
 protected:
  void scriptEverything() {
    bridge.always("GET", streamTarget(0),
                  Script::acceptStream(
                      {answers::event(1, "usage.updated", "s"), answers::event(2, "activity.updated", "s"), "{}"}));
    bridge.always("GET", streamTarget(2), Script::acceptStream());
    bridge.always("GET", kSessions, Script::json(200, answers::sessions({answers::summary("s")})));
    bridge.always("GET", kProjects, Script::json(200, answers::projects("/p")));
    bridge.always("GET", kModels, Script::json(200, answers::models("m")));
    bridge.always("GET", kUsage, Script::json(500, "{}"));
    bridge.always("GET", kRateLimit, Script::json(200, "{}"));
    bridge.always("GET", kDetail, Script::json(200, answers::detail({})));
    bridge.always("POST", kMessages, Script::json(200, "{}"));
    bridge.always("POST", kGoal, Script::json(200, "{}"));
    for (const auto* target : {kName, kArchive, kUnarchive, kTracking}) {
      bridge.always("POST", target, Script::json(200, "{}"));
    }
    bridge.always("GET", kArchived, Script::json(200, answers::archived({"a"})));
    bridge.always("GET", kSearch, Script::json(200, answers::found({"a"}, "more")));
    bridge.always("POST", kClaim, Script::json(200, R"({"deviceId":"device","token":"t"})"));
  }

  void beginEverything() {
    model->start();
    send("hello");
    send("aim", true);
    model->loadSession("s");
    model->rename("s", "name");
    model->archive("s");
    model->unarchive("s");
    model->loadArchived(false);
    model->search("q");
    model->clearActivity();
    model->pair(QString::fromStdString(answers::code(1, bridge.baseURL())));
  }

  /// Takes the model down after one turn of the event loop, after two, and so on until all it began has ended.
  void takeDownAfterEachTurn(const std::function<void()>& takeDown) {
    scriptEverything();
    int turns = 0;
    for (bool finished = false; !finished && turns < 400; ++turns) {
      stored = credentials();
      makePaired();
      client::Gate gate;
      gate.open();
      applying = &gate;  // for a turn
      beginEverything();
      for (int turn = 0; turn < turns; ++turn) QCoreApplication::processEvents(QEventLoop::AllEvents);
      finished = clock->isSleeping();
      takeDown();
      for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents(QEventLoop::AllEvents);
      applying = nullptr;
    }
    EXPECT_GT(turns, 5) << "it was in the middle at least sometimes";
  }
};

TEST_F(Teardown, AfterAnyNumberOfTurnsOfTheEventLoop) {
  takeDownAfterEachTurn([this] { model.reset(); });
}

TEST_F(Teardown, UnpairedAfterAnyNumberOfTurnsAndThenGone) {
  takeDownAfterEachTurn([this] {
    model->unpair();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    EXPECT_THAT(model->sessions(), IsEmpty());
    EXPECT_FALSE(model->isLoaded("s"));
    model.reset();
  });
}

TEST_F(Teardown, WhileTheBridgeKeepsEverythingWaiting) {
  for (const auto* target : {kSessions, kProjects, kModels, kUsage, kDetail}) {
    bridge.always("GET", target, Script::silence());
  }
  for (const auto* target : {kArchived, kSearch}) bridge.always("GET", target, Script::silence());
  for (const auto* target : {kMessages, kGoal, kClaim, kName, kArchive, kUnarchive, kTracking}) {
    bridge.always("POST", target, Script::silence());
  }
  bridge.always("GET", streamTarget(0), Script::silence());
  makePaired();
  beginEverything();
  ASSERT_TRUE(spinUntil([this] { return requests().size() >= 12; }));
  log.clear();
  destroyModel();
  EXPECT_EQ(log, requests()) << "no change is published by a model that is gone";
}

TEST_F(Teardown, DuringABackOffAndWithinAnEvent) {
  makePaired();
  for (const auto* target : {kSessions, kProjects, kModels, kUsage, kRateLimit}) {
    bridge.always("GET", target, Script::json(500, "{}"));
  }
  bridge.expect("GET", streamTarget(0), Script::drop());
  model->start();
  ASSERT_TRUE(spinUntil([this] { return clock->isSleeping(); }));
  destroyModel();
  EXPECT_FALSE(clock->isSleeping());

  makePaired();
  expectStream(0, {answers::event(1, "activity.updated", "s")});
  bridge.expect("GET", kDetail, Script::silence());
  model->start();
  ASSERT_TRUE(waitFor("GET /v1/sessions/s"));
  destroyModel();
  EXPECT_EQ(bridge.count("GET", kDetail), 1);
}

}  // namespace
}  // namespace varnel::model
