// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tests/app/model/model_fixture.h"

namespace varnel::model {
namespace answers {
namespace {

std::string joined(const std::vector<std::string>& parts) {
  std::string result;
  for (const auto& part : parts) result += (result.empty() ? "" : ",") + part;
  return result;
}

}  // namespace

std::string summary(const std::string& id, const std::string& commentary) {
  return R"({"id":")" + id + R"(","project":"p","active":true,"state":"working","latestCommentary":")" + commentary +
         R"(","updatedAt":1,"pinned":false})";
}

std::string sessions(const std::vector<std::string>& summaries) {
  return R"({"sessions":[)" + joined(summaries) + "]}";
}

std::string projects(const std::string& path) {
  return R"({"projects":[{"path":")" + path + R"(","name":"n","highRisk":false}]})";
}

std::string models(const std::string& id) {
  return R"({"data":[{"id":")" + id + R"("}]})";
}

std::string usage(int usedPercent) {
  return R"({"primary":{"usedPercent":)" + std::to_string(usedPercent) +
         R"(},"summary":{},"dailyUsageBuckets":[],"fetchedAt":1})";
}

std::string item(const std::string& id, const std::string& role, const std::string& text, double timestamp) {
  return R"({"id":")" + id + R"(","type":"message","timestamp":)" + std::to_string(timestamp) + R"(,"role":")" + role +
         R"(","text":")" + text + R"("})";
}

std::string detail(const std::vector<std::string>& items, const std::string& more) {
  return R"({"items":[)" + joined(items) + R"(],"pendingRequests":[])" + more + "}";
}

std::string page(const std::vector<std::string>& data, const std::string& nextCursor) {
  return R"({"data":[)" + joined(data) + "]" + (nextCursor.empty() ? "" : R"(,"nextCursor":")" + nextCursor + "\"") +
         "}";
}

std::string archived(const std::vector<std::string>& ids, const std::string& nextCursor) {
  std::vector<std::string> data;
  for (const auto& id : ids) data.push_back(R"({"id":")" + id + R"("})");
  return page(data, nextCursor);
}

std::string found(const std::vector<std::string>& ids, const std::string& nextCursor) {
  std::vector<std::string> data;
  for (const auto& id : ids) data.push_back(R"({"snippet":"x","thread":{"id":")" + id + R"("}})");
  return page(data, nextCursor);
}

std::string event(int sequence, const std::string& type, const std::optional<std::string>& sessionId) {
  return R"({"sequence":)" + std::to_string(sequence) + R"(,"type":")" + type + R"(","timestamp":1,"payload":{})" +
         (sessionId ? R"(,"sessionId":")" + *sessionId + R"(")" : "") + "}";
}

std::string code(int version, const std::string& baseURL) {
  return R"({"version":)" + std::to_string(version) + R"(,"baseURL":")" + baseURL + R"(","secret":"once"})";
}

}  // namespace answers

namespace {

client::Task<client::Result<void>> fakeSleep(std::shared_ptr<FakeClock> clock, std::chrono::milliseconds duration,
                                             std::stop_token stop) {
  client::Gate gate;
  clock->sleeps.push_back(duration / 1s);
  clock->sleeper = &gate;
  {
    const std::stop_callback onStop(stop, [&gate] { gate.open(); });
    co_await gate.wait();
  }
  if (clock->sleeper == &gate) clock->sleeper = nullptr;
  if (stop.stop_requested()) co_return std::unexpected(client::ClientError(client::Cancelled{}));
  co_return {};
}

}  // namespace

ModelTest::ModelTest() {
  QObject::connect(&bridge, &FakeBridge::requestSeen, &bridge, [this] {
    const auto& request = bridge.requests().back();
    log.push_back(request.method + " " + request.target);
  });
}

ModelTest::~ModelTest() {
  destroyModel();
}

void ModelTest::destroyModel() {
  model.reset();
  settle();  // what was suspended ends now, and must not miss its owner
}

wire::PairingCredentials ModelTest::credentials(const std::string& token) const {
  return {base::Url::parse(bridge.baseURL()).value(), "device", token};
}

Surroundings ModelTest::surroundings() {
  return {
      .credentialStore =
          {
              .load = [this] { return stored; },
              .save =
                  [this](const wire::PairingCredentials& saved) {
                    if (!saveFailure) stored = saved;
                    return saveFailure;
                  },
              .remove = [this] { stored.reset(); },
          },
      .clock =
          {
              .now = [this] { return clock->now; },
              .sleep = [this](auto duration, auto stop) { return fakeSleep(clock, duration, std::move(stop)); },
          },
      .deviceName = [] { return std::string("Test phone"); },
      .defaults = defaults,
      .liveActivities =
          {
              .restore = [this] { ++restored; },
              .apply = [this](auto event) { return apply(std::move(event)); },
              .clear = [this]() -> client::Task<void> { return note("activity cleared"); },
          },
      .usageResetNotifier =
          {
              .schedule =
                  [this](const auto& windows) {
                    std::string entry = "schedule";
                    for (const auto& window : windows) entry += " " + std::to_string(window.usedPercent);
                    return note(std::move(entry));
                  },
              .removePending = [this] { log.emplace_back("reminders removed"); },
          },
      .conversationNotifier =
          {
              .update = [this](auto now) { announced.push_back(std::move(now)); },
              .clear = [this] { log.emplace_back("notifications cleared"); },
          },
      .inForeground = [this] { return inForeground; },
      .onUnpair = {[this] { log.emplace_back("forgotten 1"); }, [this] { log.emplace_back("forgotten 2"); }},
  };
}

client::Task<void> ModelTest::note(std::string entry) {
  log.push_back(std::move(entry));
  co_return;
}

client::Task<void> ModelTest::apply(wire::LiveEvent event) {
  log.push_back("apply " + event.type);
  if (applying != nullptr) co_await applying->wait();
}

void ModelTest::makePaired() {
  if (!stored) stored = credentials();
  model = std::make_unique<AppModel>(surroundings());
  watch();
}

void ModelTest::makeUnpaired() {
  model = std::make_unique<AppModel>(surroundings());
  watch();
}

void ModelTest::makeConnected() {
  makePaired();
  expectStream(0);
  expectFullRefresh();
  model->start();
  ASSERT_TRUE(spinUntil([this] {
    return model->isConnected() && bridge.openStreams() == 1 && !model->models().empty() && model->usage();
  }));
  log.clear();
}

void ModelTest::watch() {
  const auto noting = [this](const char* change) { return [this, change] { log.emplace_back(change); }; };
  const auto noteId = [this](const char* change) {
    return [this, change](const std::string& id) { log.push_back(std::string(change) + " " + id); };
  };
  const auto* object = model.get();
  QObject::connect(object, &AppModel::credentialsChanged, object, noting("credentials"));
  QObject::connect(object, &AppModel::sessionsChanged, object, noting("sessions"));
  QObject::connect(object, &AppModel::projectsChanged, object, noting("projects"));
  QObject::connect(object, &AppModel::modelsChanged, object, noting("models"));
  QObject::connect(object, &AppModel::rateLimitChanged, object, noting("rateLimit"));
  QObject::connect(object, &AppModel::usageChanged, object, noting("usage"));
  QObject::connect(object, &AppModel::archivedSessionsChanged, object, noting("archivedSessions"));
  QObject::connect(object, &AppModel::archivedSessionIdsChanged, object, noting("archivedSessionIds"));
  QObject::connect(object, &AppModel::archivedNextCursorChanged, object, noting("archivedNextCursor"));
  QObject::connect(object, &AppModel::searchResultsChanged, object, noting("searchResults"));
  QObject::connect(object, &AppModel::searchNextCursorChanged, object, noting("searchNextCursor"));
  QObject::connect(object, &AppModel::searchingChanged, object,
                   [this] { log.emplace_back(model->isSearching() ? "searching" : "searched"); });
  QObject::connect(object, &AppModel::transcriptChanged, object, noteId("transcript"));
  QObject::connect(object, &AppModel::pendingRequestsChanged, object, noteId("pendingRequests"));
  QObject::connect(object, &AppModel::sessionPreferencesChanged, object, noteId("sessionPreferences"));
  QObject::connect(object, &AppModel::connectedChanged, object,
                   [this] { log.emplace_back(model->isConnected() ? "connected" : "disconnected"); });
  QObject::connect(object, &AppModel::tokenRefusedChanged, object,
                   [this] { log.emplace_back(model->isTokenRefused() ? "token refused" : "token good"); });
  QObject::connect(object, &AppModel::lastContactChanged, object, noting("lastContact"));
  QObject::connect(object, &AppModel::errorMessageChanged, object,
                   [this] { log.push_back("error " + model->errorText().toStdString()); });
}

void ModelTest::expectGet(const std::string& target, const std::string& body) {
  bridge.expect("GET", target, Script::json(200, body));
}

void ModelTest::expectLists(const std::string& sessionId) {
  expectGet(kSessions, answers::sessions({answers::summary(sessionId)}));
  expectGet(kProjects, answers::projects("/p"));
  expectGet(kModels, answers::models("m"));
}

void ModelTest::expectFullRefresh(const std::string& sessionId) {
  expectLists(sessionId);
  expectGet(kUsage, answers::usage(10));
}

std::string ModelTest::streamTarget(int after) {
  return "/v1/events?after=" + std::to_string(after) + "&access_token=t";
}

void ModelTest::expectStream(int after, std::vector<std::string> first) {
  bridge.expect("GET", streamTarget(after), Script::acceptStream(std::move(first)));
}

std::vector<std::string> ModelTest::requests() const {
  std::vector<std::string> result;
  for (const auto& entry : log) {
    if (entry.starts_with("GET ") || entry.starts_with("POST ")) result.push_back(entry);
  }
  return result;
}

bool ModelTest::waitFor(const std::string& entry) const {
  return spinUntil([&] { return seen(entry); });
}

std::vector<std::string> ModelTest::transcriptIds() const {
  std::vector<std::string> ids;
  for (const auto& item : model->transcript("s")) ids.push_back(item.id.substr(0, item.id.find('-')));
  return ids;
}

QCoro::Task<bool> ModelTest::send(const std::string& text, bool asGoal) {
  return model->sendMessage("s", text, preferencesOf("m"), {}, asGoal);
}

wire::ConversationPreferences ModelTest::preferencesOf(const std::string& model) {
  return {.model = model, .reasoningEffort = "low", .serviceTier = std::nullopt};
}

std::vector<std::string> ModelTest::sessionIds() const {
  std::vector<std::string> ids;
  for (const auto& session : model->sessions()) ids.push_back(session.id);
  return ids;
}

}  // namespace varnel::model
