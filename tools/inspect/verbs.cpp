// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/verbs.h"

#include <algorithm>
#include <vector>

#include "app/client/api_client.h"
#include "tools/inspect/arguments.h"
#include "tools/inspect/call.h"
#include "tools/inspect/json_of.h"

namespace varnel::inspect {

namespace {

using model::AppModel;
using Kind = Parameter::Kind;
using Task = QCoro::Task<Outcome>;

Task shown(Outcome outcome) {
  co_return outcome;
}

Task afterwards(QCoro::Task<> task) {
  co_await task;
  co_return Outcome("null");
}

Task told(QCoro::Task<bool> task) {
  const bool value = co_await task;
  co_return Outcome(value ? "true" : "false");
}

Task nothing() {
  return shown("null");
}

constexpr bool kOptional = false;
const Parameter kSessionId{"sessionId"};
const Parameter kPreferences{"preferences", Kind::Preferences};

struct Verb {
  std::string_view name;
  std::vector<Parameter> parameters;
  Task (*start)(AppModel& model, const Arguments& args);
};

const std::vector<Verb> kVerbs = {
    {"start",
     {},
     [](AppModel& model, const Arguments&) {
       model.start();
       return nothing();
     }},
    {"stop",
     {},
     [](AppModel& model, const Arguments&) {
       model.stop();
       return nothing();
     }},
    {"pathChanged",
     {},
     [](AppModel& model, const Arguments&) {
       model.pathChanged();
       return nothing();
     }},
    {"refresh",
     {{"includeRateLimit", Kind::Flag, kOptional}},
     [](AppModel& model, const Arguments& a) { return afterwards(model.refresh(a.flag("includeRateLimit"))); }},
    {"refreshRateLimit", {}, [](AppModel& model, const Arguments&) { return afterwards(model.refreshRateLimit()); }},
    {"report",
     {{"text"}},
     [](AppModel& model, const Arguments& a) {
       model.report(QString::fromStdString(a.text("text")));
       return nothing();
     }},
    {"clearErrorMessage",
     {},
     [](AppModel& model, const Arguments&) {
       model.clearErrorMessage();
       return nothing();
     }},
    {"loadSession",
     {kSessionId},
     [](AppModel& model, const Arguments& a) { return afterwards(model.loadSession(a.text("sessionId"))); }},
    {"sendMessage",
     {kSessionId,
      {"text"},
      kPreferences,
      {"attachments", Kind::Attachments, kOptional},
      {"asGoal", Kind::Flag, kOptional}},
     [](AppModel& model, const Arguments& a) {
       return told(model.sendMessage(a.text("sessionId"), a.text("text"), a.preferences("preferences"),
                                     a.attachments("attachments"), a.flag("asGoal")));
     }},
    {"clearActivity", {}, [](AppModel& model, const Arguments&) { return afterwards(model.clearActivity()); }},
    {"preferences",
     {kSessionId},
     [](AppModel& model, const Arguments& a) {
       const auto preferences = model.preferences(a.text("sessionId"));
       return shown(preferences ? jsonOf(*preferences) : Outcome("null"));
     }},
    {"setSessionPreferences",
     {kSessionId, kPreferences},
     [](AppModel& model, const Arguments& a) {
       model.setSessionPreferences(a.text("sessionId"), a.preferences("preferences"));
       return nothing();
     }},
    {"saveSessionPreferences",
     {},
     [](AppModel& model, const Arguments&) {
       model.saveSessionPreferences();
       return nothing();
     }},
    {"markRead",
     {kSessionId, {"through", Kind::Text, kOptional}},
     [](AppModel& model, const Arguments& a) {
       model.markRead(a.text("sessionId"), a.optionalText("through"));
       return nothing();
     }},
    {"lastReadItemID",
     {kSessionId},
     [](AppModel& model, const Arguments& a) {
       const auto item = model.lastReadItemID(a.text("sessionId"));
       return shown(item ? jsonOf(json::JSONValue(*item)) : Outcome("null"));
     }},
    {"pair",
     {{"qrText"}},
     [](AppModel& model, const Arguments& a) {
       return afterwards(model.pair(QString::fromStdString(a.text("qrText"))));
     }},
    {"unpair",
     {},
     [](AppModel& model, const Arguments&) {
       model.unpair();
       return nothing();
     }},
    {"rename",
     {kSessionId, {"name"}},
     [](AppModel& model, const Arguments& a) { return told(model.rename(a.text("sessionId"), a.text("name"))); }},
    {"archive",
     {kSessionId},
     [](AppModel& model, const Arguments& a) { return told(model.archive(a.text("sessionId"))); }},
    {"unarchive",
     {kSessionId},
     [](AppModel& model, const Arguments& a) { return told(model.unarchive(a.text("sessionId"))); }},
    {"loadArchived",
     {{"loadMore", Kind::Flag, kOptional}},
     [](AppModel& model, const Arguments& a) { return afterwards(model.loadArchived(a.flag("loadMore"))); }},
    {"search",
     {{"query"}},
     [](AppModel& model, const Arguments& a) { return afterwards(model.search(a.text("query"))); }},
    {"loadMoreSearchResults",
     {},
     [](AppModel& model, const Arguments&) { return afterwards(model.loadMoreSearchResults()); }},
    {"handle",
     {{"url"}},
     [](AppModel& model, const Arguments& a) {
       model.handle(a.text("url"));
       return nothing();
     }},
    {"selectSession",
     {{"sessionId", Kind::Text, kOptional}},
     [](AppModel& model, const Arguments& a) {
       model.selectSession(a.optionalText("sessionId"));
       return nothing();
     }},
    {"selectTranscriptItem",
     {{"itemId", Kind::Text, kOptional}},
     [](AppModel& model, const Arguments& a) {
       model.selectTranscriptItem(a.optionalText("itemId"));
       return nothing();
     }},
};

/// A verb's arguments may be called by the word that introduces them, too: rename TO a name, the preferences FOR a
/// conversation.
void useOwnNames(json::JSONValue::Object& arguments) {
  for (const auto& [word, name] : {std::pair("to", "name"), std::pair("for", "sessionId")}) {
    auto argument = arguments.extract(word);
    if (argument.empty()) continue;
    argument.key() = name;
    arguments.insert(std::move(argument));
  }
}

}  // namespace

Task startVerb(AppModel& model, const std::string& name, json::JSONValue arguments) {
  if (arguments.object() != nullptr) useOwnNames(*arguments.object());
  const auto text = json::write(arguments);
  if (!text) return shown(std::unexpected(text.error().message()));
  const auto verb = std::ranges::find(kVerbs, name, &Verb::name);
  if (verb != kVerbs.end()) {
    const auto parsed = Arguments::parse(*text, verb->parameters);
    return parsed ? verb->start(model, *parsed) : shown(std::unexpected(parsed.error()));
  }
  if (auto operation = startOperation(model.client(), name, *text)) return *std::move(operation);
  return shown(std::unexpected("no verb is called " + name));
}

std::string verbList() {
  std::string list;
  for (const Verb& verb : kVerbs) {
    list.append("  ").append(verb.name);
    for (const Parameter& parameter : verb.parameters) {
      list.append(" ").append(parameter.name).append(parameter.required ? "" : "?");
    }
    list += '\n';
  }
  return list;
}

}  // namespace varnel::inspect
