// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest/QSignalSpy>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "app/device/draft_store.h"
#include "app/screens/session/session_view_state.h"
#include "tests/app/model/model_fixture.h"

namespace varnel::screens {

using model::ElementsAre;
using model::Script;
using model::spinUntil;
namespace answers = model::answers;

inline constexpr const char* kInterrupt = "/v1/sessions/s/interrupt";
inline constexpr const char* kSettings = "/v1/sessions/s/settings";
inline constexpr const char* kUploads = "/v1/sessions/s/uploads";
inline constexpr const char* kQueue = "/v1/sessions/s/queue";
inline constexpr const char* kTrack = "/v1/tracking";
inline constexpr const char* kTwoModels =
    R"({"data":[{"id":"other","displayName":"Other","supportedReasoningEfforts":["low"],
                 "serviceTiers":[{"id":"priority","name":"Fast"}]},
                {"id":"m","displayName":"M","isDefault":true,"defaultReasoningEffort":"medium",
                 "supportedReasoningEfforts":["medium","very high"]},
                {"id":"bare","displayName":"Bare"}]})";

/// An open conversation of the id "s" on a scripted bridge.
class SessionTest : public model::ModelTest {
 protected:
  void SetUp() override { makePaired(); }
  void TearDown() override { state.reset(); }

  /// The conversation as the bridge tells of it, with more members when asked to.
  static std::string session(bool active, const std::string& more = "") {
    return R"({"id":"s","project":"shop","active":)" + std::string(active ? "true" : "false") + R"(,"state":")" +
           (active ? "working" : "done") + R"(","latestCommentary":"","updatedAt":1,"pinned":false)" + more + "}";
  }
  /// The conversation's detail: items, the session, and further members of the answer.
  static std::string detail(const std::vector<std::string>& items, const std::string& summary,
                            const std::string& more = "") {
    return answers::detail(items, R"(,"session":)" + summary + more);
  }
  static std::vector<std::string> hello() { return {answers::item("1", "user", "hello")}; }

  /// From here on the bridge answers every load with this.
  void serve(const std::string& summary, const std::string& body, const std::string& models = kTwoModels) {
    bridge.always("GET", model::kDetail, Script::json(200, body));
    bridge.always("GET", model::kSessions, Script::json(200, R"({"sessions":[)" + summary + "]}"));
    bridge.always("GET", model::kProjects, Script::json(200, answers::projects("/p")));
    bridge.always("GET", model::kModels, Script::json(200, models));
  }
  void make() { state = std::make_unique<SessionViewState>(*model, QStringLiteral("s"), services()); }
  /// Makes the conversation and waits until it can be used.
  void open(const std::string& summary, const std::string& body) {
    serve(summary, body);
    make();
    ASSERT_TRUE(spinUntil([this] { return state->settings()->isReady(); }));
    settle();
  }
  void open(bool active = false) { open(session(active), detail(hello(), session(active))); }

  [[nodiscard]] SessionServices services() {
    return {.copyText = [this](const QString& text) { copied = text; },
            .openUrl = [this](const QUrl& url) { opened.push_back(url.toString()); },
            .now = [this] { return now; },
            .clipboardMedia = [this] { return clipboard; },
            .readMedia = [](const MediaSource& source) -> std::optional<platform::PickedMedia> {
              if (source.path.contains(QLatin1String("bad"))) return std::nullopt;
              const bool video = source.path.endsWith(QLatin1String("mov"));
              return platform::PickedMedia{
                  .type = {.mimeType = video ? QStringLiteral("video/quicktime") : QStringLiteral("image/png"),
                           .extension = video ? QStringLiteral("mov") : QStringLiteral("png"),
                           .isVideo = video},
                  .data = "bytes"};
            },
            .drafts = &drafts};
  }
  ComposerState& composer() { return *state->composer(); }
  [[nodiscard]] std::string lastBody() const { return bridge.requests().back().body; }
  /// One role of every row.
  static std::vector<std::string> column(const QAbstractItemModel* rows, const char* role) {
    std::vector<std::string> result;
    const int number = rows->roleNames().key(role);
    for (int row = 0; row < rows->rowCount(); ++row) {
      result.push_back(rows->index(row, 0).data(number).toString().toStdString());
    }
    return result;
  }
  [[nodiscard]] std::vector<std::string> texts() const { return column(state->transcript()->rows(), "text"); }

  std::chrono::milliseconds now{1'000'000};
  QString copied;
  std::vector<QString> opened;
  platform::MediaOffer clipboard;
  device::DraftStore drafts{*defaults};
  std::unique_ptr<SessionViewState> state;
};

}  // namespace varnel::screens
