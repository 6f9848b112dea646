// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/follow.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>

#include "app/client/async.h"
#include "app/model/app_model.h"
#include "app/platform/defaults_store_file.h"
#include "app/platform/defaults_store_memory.h"
#include "tools/inspect/call.h"
#include "tools/inspect/json_of.h"
#include "tools/inspect/verbs.h"

namespace varnel::inspect {

namespace {

using json::JSONValue;
using model::AppModel;

/// The pairing of the command line, for this run alone.
model::CredentialStore pairedAs(wire::PairingCredentials credentials) {
  const auto kept = std::make_shared<std::optional<wire::PairingCredentials>>(std::move(credentials));
  return {.load = [kept] { return *kept; },
          .save =
              [kept](const wire::PairingCredentials& saved) {
                *kept = saved;
                return std::optional<QString>();
              },
          .remove = [kept] { kept->reset(); }};
}

model::Surroundings surroundingsFor(const CommandLine& command, wire::PairingCredentials credentials) {
  std::shared_ptr<platform::DefaultsStore> defaults;
  if (command.stateDirectory) {
    defaults = std::make_shared<platform::DefaultsFileStore>(*command.stateDirectory);
  } else {
    defaults = std::make_shared<platform::MemoryDefaultsStore>();
  }
  const auto now = [] {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
  };
  return {.credentialStore = pairedAs(std::move(credentials)),
          .clock = {.now = now, .sleep = client::sleepFor},
          .deviceName = [] { return std::string("varnel-inspect"); },
          .defaults = std::move(defaults)};
}

template <class Record>
Outcome jsonOrNull(const std::optional<Record>& record) {
  return record ? jsonOf(*record) : Outcome("null");
}
Outcome jsonOrNull(const std::optional<std::string>& text) {
  return jsonOf(text ? JSONValue(*text) : JSONValue());
}

/// A published field and how it is shown.
struct Field {
  std::string_view name;
  void (AppModel::*changed)();
  Outcome (*value)(const AppModel& model);
};

constexpr auto kFields = std::to_array<Field>({
    {"credentials", &AppModel::credentialsChanged, [](const AppModel& m) { return jsonOf(JSONValue(m.isPaired())); }},
    {"sessions", &AppModel::sessionsChanged, [](const AppModel& m) { return jsonOf(identitiesOf(m.sessions())); }},
    {"projects", &AppModel::projectsChanged, [](const AppModel& m) { return jsonOf(identitiesOf(m.projects())); }},
    {"models", &AppModel::modelsChanged, [](const AppModel& m) { return jsonOf(identitiesOf(m.models())); }},
    {"rateLimit", &AppModel::rateLimitChanged, [](const AppModel& m) { return jsonOrNull(m.rateLimit()); }},
    {"usage", &AppModel::usageChanged, [](const AppModel& m) { return jsonOrNull(m.usage()); }},
    {"archivedSessions", &AppModel::archivedSessionsChanged,
     [](const AppModel& m) { return jsonOf(identitiesOf(m.archivedSessions())); }},
    {"archivedSessionIds", &AppModel::archivedSessionIdsChanged,
     [](const AppModel& m) {
       return jsonOf(JSONValue(JSONValue::Array(m.archivedSessionIds().begin(), m.archivedSessionIds().end())));
     }},
    {"archivedNextCursor", &AppModel::archivedNextCursorChanged,
     [](const AppModel& m) { return jsonOrNull(m.archivedNextCursor()); }},
    {"searchResults", &AppModel::searchResultsChanged,
     [](const AppModel& m) { return jsonOf(identitiesOf(m.searchResults())); }},
    {"searchNextCursor", &AppModel::searchNextCursorChanged,
     [](const AppModel& m) { return jsonOrNull(m.searchNextCursor()); }},
    {"searching", &AppModel::searchingChanged, [](const AppModel& m) { return jsonOf(JSONValue(m.isSearching())); }},
    {"connected", &AppModel::connectedChanged, [](const AppModel& m) { return jsonOf(JSONValue(m.isConnected())); }},
    {"refreshed", &AppModel::refreshedChanged, [](const AppModel& m) { return jsonOf(JSONValue(m.isRefreshed())); }},
    {"tokenRefused", &AppModel::tokenRefusedChanged,
     [](const AppModel& m) { return jsonOf(JSONValue(m.isTokenRefused())); }},
    {"lastContact", &AppModel::lastContactChanged,
     [](const AppModel& m) { return jsonOf(m.lastContact() ? JSONValue(*m.lastContact()) : JSONValue()); }},
    {"selectedSessionId", &AppModel::selectedSessionIdChanged,
     [](const AppModel& m) { return jsonOrNull(m.selectedSessionId()); }},
    {"selectedTranscriptItemId", &AppModel::selectedTranscriptItemIdChanged,
     [](const AppModel& m) { return jsonOrNull(m.selectedTranscriptItemId()); }},
    {"errorMessage", &AppModel::errorMessageChanged,
     [](const AppModel& m) {
       return jsonOf(m.errorMessage() ? JSONValue(m.errorMessage()->toStdString()) : JSONValue());
     }},
});

class Follow {
 public:
  Follow(const CommandLine& command, wire::PairingCredentials credentials);

  int run() {
    QCoreApplication::exec();
    return m_status;
  }

 private:
  void watch();
  void tellWhatWasLoaded() const;
  void tellSequence();
  static void print(std::string_view name, const Outcome& value);

  void readInput();
  void takeLine(std::string_view line);
  QCoro::Task<> perform(std::string name, JSONValue arguments);
  void refuse(std::string_view line, const std::string& reason);
  void endIfDone() const;

  AppModel m_model;
  QSocketNotifier m_input;
  std::string m_unread;
  std::int64_t m_lastSequence = 0;
  int m_running = 0;  ///< commands
  int m_status = kExitOk;
  bool m_inputClosed = false;
  bool m_timed;
};

Follow::Follow(const CommandLine& command, wire::PairingCredentials credentials)
    : m_model(surroundingsFor(command, std::move(credentials))),
      m_input(STDIN_FILENO, QSocketNotifier::Read),
      m_timed(command.seconds.has_value()) {
  constexpr double kMillisecondsInSecond = 1000;
  if (m_timed) {
    const auto milliseconds = static_cast<std::int64_t>(*command.seconds * kMillisecondsInSecond);
    QTimer::singleShot(std::chrono::milliseconds(milliseconds), &m_model, [] { QCoreApplication::quit(); });
  }
  QObject::connect(&m_input, &QSocketNotifier::activated, &m_model, [this] { readInput(); });
  watch();
  tellWhatWasLoaded();
  m_model.start();
  if (command.open) {
    m_model.selectSession(command.open);
    m_model.loadSession(*command.open);
  }
}

void Follow::watch() {
  // Whatever moves the number is a sign of life, too.
  QObject::connect(&m_model, &AppModel::lastContactChanged, &m_model, [this] { tellSequence(); });
  for (const Field& field : kFields) {
    QObject::connect(&m_model, field.changed, &m_model, [this, &field] { print(field.name, field.value(m_model)); });
  }
  QObject::connect(&m_model, &AppModel::transcriptChanged, &m_model, [this](const std::string& id) {
    print("transcript", jsonOf(JSONValue(JSONValue::Object{{id, identitiesOf(m_model.transcript(id))}})));
  });
  QObject::connect(&m_model, &AppModel::pendingRequestsChanged, &m_model, [this](const std::string& id) {
    print("pendingRequests", jsonOf(JSONValue(JSONValue::Object{{id, identitiesOf(m_model.pendingRequests(id))}})));
  });
  QObject::connect(&m_model, &AppModel::sessionPreferencesChanged, &m_model,
                   [this] { print("sessionPreferences", jsonOf(m_model.sessionPreferences())); });
}

void Follow::tellWhatWasLoaded() const {
  print("credentials", jsonOf(JSONValue(m_model.isPaired())));
  if (!m_model.sessionPreferences().empty()) print("sessionPreferences", jsonOf(m_model.sessionPreferences()));
  if (m_model.usage()) print("usage", jsonOf(*m_model.usage()));
  if (m_model.rateLimit()) print("rateLimit", jsonOf(*m_model.rateLimit()));
}

void Follow::tellSequence() {
  if (m_model.lastSequence() == m_lastSequence) return;
  m_lastSequence = m_model.lastSequence();
  print("lastSequence", std::to_string(m_lastSequence));
}

void Follow::print(std::string_view name, const Outcome& value) {
  const double now = std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
  const std::string line = R"({"at":)" + jsonOf(JSONValue(now)).value_or("null") + ",\"" + std::string(name) +
                           "\":" + value.value_or("null") + "}\n";
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fflush(stdout);
}

void Follow::readInput() {
  std::array<char, 65536> piece{};
  const auto size = ::read(STDIN_FILENO, piece.data(), piece.size());
  if (size < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (size > 0) {
    m_unread.append(piece.data(), static_cast<std::size_t>(size));
  } else {
    m_input.setEnabled(false);
    m_inputClosed = true;
    if (!m_unread.empty()) m_unread += '\n';
  }
  for (auto end = m_unread.find('\n'); end != std::string::npos; end = m_unread.find('\n')) {
    const std::string line = m_unread.substr(0, end);
    m_unread.erase(0, end + 1);
    takeLine(line);
  }
  endIfDone();
}

void Follow::takeLine(std::string_view line) {
  if (line.find_first_not_of(" \t\r") == std::string_view::npos) return;
  const auto command = json::parse(line);
  if (!command) {
    refuse(line, command.error().message());
    return;
  }
  const auto* name = command->member("call");
  if (name == nullptr || name->string() == nullptr) {
    refuse(line, R"(expected {"call": VERB, "args": {...}})");
    return;
  }
  const auto* arguments = command->member("args");
  perform(*name->string(), arguments == nullptr ? JSONValue(JSONValue::Object()) : *arguments);
}

QCoro::Task<> Follow::perform(std::string name, JSONValue arguments) {
  ++m_running;
  const Outcome outcome = co_await startVerb(m_model, name, std::move(arguments));
  --m_running;
  if (outcome) {
    const auto quoted = jsonOf(JSONValue(name)).value_or("null");
    print("result", R"({"call":)" + quoted + R"(,"value":)" + *outcome + "}");
  } else {
    refuse(name, outcome.error());
  }
  endIfDone();
}

void Follow::refuse(std::string_view line, const std::string& reason) {
  std::fprintf(stderr, "%.*s: %s\n", static_cast<int>(line.size()), line.data(), reason.c_str());
  m_status = kExitRefused;
}

void Follow::endIfDone() const {
  // From the event loop, which may not run yet.
  if (m_inputClosed && m_running == 0 && !m_timed) {
    QMetaObject::invokeMethod(qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
  }
}

}  // namespace

int runFollow(const CommandLine& command) {
  if (!command.parameters.empty()) return kExitUsage;
  auto credentials = credentialsFrom(command);
  if (!credentials) return kExitUsage;
  return Follow(command, *std::move(credentials)).run();
}

}  // namespace varnel::inspect
