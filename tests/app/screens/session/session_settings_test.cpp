// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/screens/session/session_fixture.h"

namespace varnel::screens {
namespace {

using testing::HasSubstr;

class Settings : public SessionTest {
 protected:
  SessionSettings& settings() { return *state->settings(); }
  [[nodiscard]] std::string chosen() {
    const auto preferences = settings().preferences();
    if (!preferences) return "none";
    return preferences->model + " " + preferences->reasoningEffort + " " + *preferences->serviceTier;
  }
  static std::string checked(const QVariantList& entries) {
    for (const QVariant& each : entries) {
      if (each.toMap().value(QStringLiteral("checked")).toBool()) {
        return each.toMap().value(QStringLiteral("label")).toString().toStdString();
      }
    }
    return "none";
  }
};

TEST_F(Settings, StartWithWhatIsStoredElseWithTheCataloguesDefault) {
  open();
  EXPECT_EQ(chosen(), "m medium default");
  const std::string stored = session(
      false, R"(,"turnPreferences":{"mode":"plan","model":"gone","reasoningEffort":"x","serviceTier":"priority"})");
  state.reset();
  open(stored, detail(hello(), stored));
  EXPECT_EQ(chosen(), "gone x priority");
  EXPECT_EQ(settings().modelLabel(), QStringLiteral("Model · Unknown"));
  EXPECT_EQ(settings().modeLabel(), QStringLiteral("Mode · Plan"));
  EXPECT_TRUE(settings().efforts().isEmpty());
  EXPECT_FALSE(settings().isFastEnabled());
  EXPECT_TRUE(settings().isFastMode());
}

TEST_F(Settings, ChoosingAModelChoosesItsEffort) {
  open();
  bridge.always("POST", kSettings, Script::json(200, "{}"));
  settings().chooseModel(QStringLiteral("other"));
  EXPECT_EQ(chosen(), "other low default");
  EXPECT_EQ(settings().modelLabel(), QStringLiteral("Model · Other"));
  EXPECT_TRUE(settings().isFastEnabled());
  settings().chooseModel(QStringLiteral("bare"));
  EXPECT_EQ(chosen(), "bare medium default");
  settings().chooseModel(QStringLiteral("m"));
  settings().chooseEffort(QStringLiteral("very high"));
  EXPECT_EQ(settings().thinkingLabel(), QStringLiteral("Thinking · Very High"));
  EXPECT_EQ(checked(settings().efforts()), "Very High");
}

TEST_F(Settings, ABurstOfChangesIsOneRequestWithAllFourValues) {
  open();
  const auto before = requests().size();
  settings().chooseModel(QStringLiteral("other"));
  settings().chooseMode(QStringLiteral("plan"));
  settings().setFastMode(true);
  bridge.always("POST", kSettings, Script::json(200, "{}"));
  EXPECT_EQ(model->sessionPreferences().count("s"), 0U) << "not before the pause is over";
  ASSERT_TRUE(spinUntil([&] { return requests().size() > before; }));
  support::spinFor(std::chrono::milliseconds(350));
  EXPECT_EQ(requests().size(), before + 1);
  for (const char* part :
       {R"("mode":"plan")", R"("model":"other")", R"("reasoningEffort":"low")", R"("serviceTier":"priority")"}) {
    EXPECT_THAT(lastBody(), HasSubstr(part));
  }
  EXPECT_EQ(model->sessionPreferences().at("s").model, "other");
  settings().chooseModel(QStringLiteral("other"));
  settings().chooseMode(QStringLiteral("plan"));
  support::spinFor(std::chrono::milliseconds(350));
  EXPECT_EQ(requests().size(), before + 1) << "nothing has changed";
}

TEST_F(Settings, AChangeThatHasNotGoneIsDroppedWhenTheConversationIsClosed) {
  open();
  const auto before = requests().size();
  settings().setFastMode(true);
  state.reset();
  support::spinFor(std::chrono::milliseconds(350));
  EXPECT_EQ(requests().size(), before);
}

TEST_F(Settings, AGoalIsAModeOfItsOwnThatTheBridgeIsNotToldOf) {
  open();
  const auto before = requests().size();
  settings().chooseMode(QStringLiteral("goal"));
  EXPECT_EQ(settings().modeLabel(), QStringLiteral("Mode · Goal"));
  EXPECT_EQ(checked(settings().modes()), "Goal");
  support::spinFor(std::chrono::milliseconds(350));
  EXPECT_EQ(requests().size(), before);
  settings().chooseMode(QStringLiteral("live"));
  EXPECT_EQ(checked(settings().modes()), "Live");
}

TEST_F(Settings, TheContextIsCutToWholePercent) {
  open();
  EXPECT_EQ(settings().contextLabel(), QStringLiteral("Live Context · Waiting"));
  EXPECT_FALSE(settings().hasUsage());
  struct Case {
    std::string used;
    std::string window;
    QString percent;
  };
  for (const Case& each : std::vector<Case>{{"5", "0", QStringLiteral("0")},
                                            {"-5", "10", QStringLiteral("0")},
                                            {"15", "10", QStringLiteral("100")},
                                            {"999", "1000", QStringLiteral("99")}}) {
    const std::string summary =
        session(false, R"(,"tokenUsage":{"contextTokens":)" + each.used + R"(,"contextWindow":)" + each.window + "}");
    serve(summary, detail(hello(), summary));
    support::await(model->loadSession("s"));
    EXPECT_EQ(settings().contextLabel(), QStringLiteral("Live Context · %1%").arg(each.percent));
    EXPECT_EQ(settings().usedText(), QStringLiteral("%1% used").arg(each.percent));
  }
}

}  // namespace
}  // namespace varnel::screens
