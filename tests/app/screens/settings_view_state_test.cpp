// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/screens/settings/settings_view_state.h"

#include "app/platform/defaults_store_memory.h"
#include "tests/app/model/model_fixture.h"

namespace varnel::screens {
namespace {

namespace answers = model::answers;

class Settings : public model::ModelTest {
 protected:
  void TearDown() override { state.reset(); }
  void make() {
    state = std::make_unique<SettingsViewState>(*model, settings,
                                                ScreenSurroundings{.now = [this] { return clock->now; },
                                                                   .clipboard = [] { return QString(); },
                                                                   .defaults = own,
                                                                   .activitiesEnabled = [this] { return activities; }});
  }

  bool activities = false;
  std::shared_ptr<platform::MemoryDefaultsStore> own = std::make_shared<platform::MemoryDefaultsStore>();
  AppSettings settings{own};
  std::unique_ptr<SettingsViewState> state;
};

TEST_F(Settings, SaysWithWhatAndHowItIsConnected) {
  makePaired();
  make();
  EXPECT_EQ(state->host(), QStringLiteral("127.0.0.1")) << "no scheme, no port, no path";
  EXPECT_EQ(state->status(), QStringLiteral("Reconnecting"));
  EXPECT_EQ(state->lastContact(), QString());
  expectLists();
  support::await(model->refresh(false));
  EXPECT_EQ(state->status(), QStringLiteral("Connected"));
  clock->now += 300;
  EXPECT_EQ(state->lastContact(), QStringLiteral("5 minutes ago"));
  EXPECT_EQ(state->activitiesAllowed(), QStringLiteral("No"));
  activities = true;
  EXPECT_EQ(state->activitiesAllowed(), QStringLiteral("Yes"));
}

TEST_F(Settings, ABridgeOfAnotherContractIsNamed) {
  makePaired();
  make();
  const auto answer = [](const char* version, const std::string& body) {
    return model::Script::raw("HTTP/1.1 200 OK\r\nVarnel-Contract: " + std::string(version) +
                              "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
  };
  const auto refresh = [&](const char* version) {
    bridge.expect("GET", model::kSessions, answer(version, answers::sessions({})));
    bridge.expect("GET", model::kProjects, answer(version, answers::projects("/p")));
    bridge.expect("GET", model::kModels, answer(version, answers::models("m")));
    support::await(model->refresh(false));
  };
  EXPECT_EQ(state->bridgeContract(), QString());
  refresh("1");
  EXPECT_EQ(state->bridgeContract(), QString());
  refresh("2");
  EXPECT_EQ(state->bridgeContract(),
            QStringLiteral("The bridge speaks version 2 of the contract, this app version 1."));
}

TEST_F(Settings, ForgettingTheHostActsAtOnce) {
  makePaired();
  make();
  state->forgetHost();
  EXPECT_FALSE(model->isPaired());
  EXPECT_EQ(state->host(), QStringLiteral("Not paired"));
}

TEST_F(Settings, WhatIsSetIsKeptAndToldAndHasADefault) {
  makePaired();
  make();
  int told = 0;
  QObject::connect(state.get(), &SettingsViewState::changed, state.get(), [&told] { ++told; });
  EXPECT_TRUE(state->notifiesDone());
  EXPECT_EQ(state->appearance(), 0);
  state->setNotifyDone(false);
  state->setAppearance(2);
  state->setLanguage(2);
  EXPECT_EQ(told, 3);
  const AppSettings next(own);
  EXPECT_FALSE(next.isOn(AppSettings::kNotifyDone));
  EXPECT_TRUE(next.isOn(AppSettings::kNotifyFailed));
  EXPECT_EQ(next.text(AppSettings::kAppearance), QStringLiteral("dark"));
  EXPECT_EQ(next.text(AppSettings::kLanguage), QStringLiteral("fr"));
}

}  // namespace
}  // namespace varnel::screens
