// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/call.h"

#include <QFileInfo>
#include <algorithm>
#include <cstdio>

#include "app/client/api_client.h"
#include "tools/inspect/arguments.h"
#include "tools/inspect/json_of.h"

namespace varnel::inspect {

namespace {

using client::APIClient;
using client::Result;
using client::Task;
using Kind = Parameter::Kind;

using inspect::jsonOf;
Outcome jsonOf(const std::string& text) {
  return jsonOf(json::JSONValue(text));
}
Outcome jsonOf(const json::RawValue& value) {
  return jsonOf(value.value());
}
Outcome jsonOf(const wire::SessionDetail& detail) {
  return jsonOf(detail.whole);
}

template <class Value>
Task<Outcome> shown(Task<Result<Value>> task) {
  auto result = co_await task;
  if (!result) co_return std::unexpected(client::userText(result.error()));
  if constexpr (std::is_void_v<Value>) {
    co_return Outcome("null");
  } else {
    co_return jsonOf(*result);
  }
}

/// The arguments of `upload` that may be left out follow from the file.
Task<Outcome> upload(APIClient& api, const Arguments& args) {
  const QFileInfo file(QString::fromStdString(args.text("file")));
  return shown(api.upload(args.text("sessionId"), args.file("file"),
                          args.optionalText("mimeType").value_or("application/octet-stream"),
                          args.optionalText("fileName").value_or(file.fileName().toStdString())));
}

Task<Outcome> createSession(APIClient& api, const Arguments& args) {
  return shown(api.createSession({.cwd = args.text("cwd"),
                                  .mode = args.optionalText("mode").value_or("default"),
                                  .model = args.optionalText("model"),
                                  .reasoningEffort = args.optionalText("reasoningEffort"),
                                  .sandbox = args.text("sandbox"),
                                  .approvalPolicy = args.text("approvalPolicy"),
                                  .acknowledgeHighRisk = args.flag("acknowledgeHighRisk"),
                                  .prompt = args.text("prompt")}));
}

constexpr bool kOptional = false;

struct Operation {
  std::string_view name;
  std::vector<Parameter> parameters;
  Task<Outcome> (*start)(APIClient& api, const Arguments& args);
};

const Parameter kSessionId{"sessionId"};
const Parameter kCursor{"cursor", Kind::Text, kOptional};
const Parameter kPreferences{"preferences", Kind::Preferences};
const Parameter kAttachments{"attachments", Kind::Attachments, kOptional};

const std::vector<Operation> kOperations = {
    {"claim",
     {{"baseURL", Kind::URL}, {"secret"}, {"deviceName"}},
     [](APIClient& api, const Arguments& a) {
       return shown(api.claim(a.url("baseURL"), a.text("secret"), a.text("deviceName")));
     }},
    {"sessions", {}, [](APIClient& api, const Arguments&) { return shown(api.sessions()); }},
    {"projects", {}, [](APIClient& api, const Arguments&) { return shown(api.projects()); }},
    {"models", {}, [](APIClient& api, const Arguments&) { return shown(api.models()); }},
    {"rateLimit", {}, [](APIClient& api, const Arguments&) { return shown(api.rateLimit()); }},
    {"usage",
     {{"sessionId", Kind::Text, kOptional}},
     [](APIClient& api, const Arguments& a) { return shown(api.usage(a.optionalText("sessionId"))); }},
    {"archivedSessions",
     {kCursor},
     [](APIClient& api, const Arguments& a) { return shown(api.archivedSessions(a.optionalText("cursor"))); }},
    {"search",
     {{"query"}, kCursor},
     [](APIClient& api, const Arguments& a) { return shown(api.search(a.text("query"), a.optionalText("cursor"))); }},
    {"interrupt",
     {kSessionId},
     [](APIClient& api, const Arguments& a) { return shown(api.interrupt(a.text("sessionId"))); }},
    {"rename",
     {kSessionId, {"name"}},
     [](APIClient& api, const Arguments& a) { return shown(api.rename(a.text("sessionId"), a.text("name"))); }},
    {"archive",
     {kSessionId, {"unarchive", Kind::Flag, kOptional}},
     [](APIClient& api, const Arguments& a) { return shown(api.archive(a.text("sessionId"), a.flag("unarchive"))); }},
    {"session",
     {kSessionId},
     [](APIClient& api, const Arguments& a) { return shown(api.session(a.text("sessionId"))); }},
    {"sendMessage",
     {kSessionId, {"text"}, kPreferences, kAttachments},
     [](APIClient& api, const Arguments& a) {
       return shown(api.sendMessage(a.text("sessionId"), a.text("text"), a.preferences("preferences"),
                                    a.attachments("attachments")));
     }},
    {"startGoal",
     {kSessionId, {"objective"}, kPreferences, kAttachments},
     [](APIClient& api, const Arguments& a) {
       return shown(api.startGoal(a.text("sessionId"), a.text("objective"), a.preferences("preferences"),
                                  a.attachments("attachments")));
     }},
    {"upload",
     {kSessionId, {"file", Kind::File}, {"mimeType", Kind::Text, kOptional}, {"fileName", Kind::Text, kOptional}},
     upload},
    {"updateSettings",
     {kSessionId, kPreferences},
     [](APIClient& api, const Arguments& a) {
       return shown(api.updateSettings(a.text("sessionId"), a.preferences("preferences")));
     }},
    {"createSession",
     {{"cwd"},
      {"mode", Kind::Mode, kOptional},
      {"model", Kind::Text, kOptional},
      {"reasoningEffort", Kind::Text, kOptional},
      {"sandbox"},
      {"approvalPolicy"},
      {"acknowledgeHighRisk", Kind::Flag, kOptional},
      {"prompt"}},
     createSession},
    {"resolve",
     {{"requestId"}, {"result", Kind::Any}},
     [](APIClient& api, const Arguments& a) { return shown(api.resolve(a.text("requestId"), a.any("result"))); }},
    {"track",
     {{"sessionId", Kind::Text, kOptional}, {"pin", Kind::Flag, kOptional}, {"action", Kind::Text, kOptional}},
     [](APIClient& api, const Arguments& a) {
       return shown(api.track(a.optionalText("sessionId"), a.flag("pin"), a.optionalText("action")));
     }},
};

Task<Outcome> refused(std::string reason) {
  co_return std::unexpected(std::move(reason));
}

int refuse(int status, const std::string& reason) {
  std::fprintf(stderr, "%s\n", reason.c_str());
  return status;
}

}  // namespace

int runCall(const CommandLine& command) {
  if (command.parameters.empty() || command.parameters.size() > 2) return kExitUsage;
  const auto operation = std::ranges::find(kOperations, command.parameters.front(), &Operation::name);
  if (operation == kOperations.end()) return refuse(kExitUsage, "no operation is called " + command.parameters[0]);
  const std::string given = command.parameters.size() == 2 ? command.parameters[1] : "{}";
  const auto arguments = Arguments::parse(given, operation->parameters);
  if (!arguments) return refuse(kExitUsage, arguments.error());

  std::optional<wire::PairingCredentials> credentials;
  if (operation->name != "claim") {
    credentials = credentialsFrom(command);
    if (!credentials) return kExitUsage;
  }
  APIClient api(std::move(credentials));
  const Outcome outcome = QCoro::waitFor(operation->start(api, *arguments));
  if (!outcome) return refuse(kExitRefused, outcome.error());
  std::fwrite(outcome->data(), 1, outcome->size(), stdout);
  std::fputc('\n', stdout);
  return kExitOk;
}

std::optional<Task<Outcome>> startOperation(APIClient& api, std::string_view name, std::string_view arguments) {
  const auto operation = std::ranges::find(kOperations, name, &Operation::name);
  if (operation == kOperations.end()) return std::nullopt;
  const auto parsed = Arguments::parse(arguments, operation->parameters);
  if (!parsed) return refused(parsed.error());
  return operation->start(api, *parsed);
}

std::string operationList() {
  std::string list;
  for (const Operation& operation : kOperations) {
    list.append("  ").append(operation.name);
    for (const Parameter& parameter : operation.parameters) {
      list.append(" ").append(parameter.name).append(parameter.required ? "" : "?");
    }
    list += '\n';
  }
  return list;
}

std::optional<wire::PairingCredentials> credentialsFrom(const CommandLine& command) {
  if (!command.baseURL || !command.token) {
    refuse(kExitUsage, "--base-url and --token or --token-file are needed");
    return std::nullopt;
  }
  const auto baseURL = base::Url::parse(*command.baseURL);
  if (!baseURL) {
    refuse(kExitUsage, "not a URL: " + *command.baseURL);
    return std::nullopt;
  }
  return wire::PairingCredentials{*baseURL, command.deviceId, *command.token};
}

}  // namespace varnel::inspect
