// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/request_card.h"

#include <utility>

#include "core/transcript/file_changes.h"

namespace varnel::transcript {
namespace {

using json::JSONValue;

constexpr std::size_t kOptionsWorthChoosing = 3;

std::string textOf(const JSONValue& object, std::string_view member) {
  const JSONValue* value = object.member(member);
  return value != nullptr && value->string() != nullptr ? *value->string() : std::string();
}

JSONValue::Object answersOf(const std::string& answer) {
  return {{"answers", JSONValue::Array{answer}}};
}

/// Null when there is no such member or it is no list.
const JSONValue::Array* questionsOf(const wire::PendingRequest& request) {
  const auto questions = request.params.find("questions");
  return questions == request.params.end() ? nullptr : questions->second.array();
}

/// A word as a shell would take it back, so that the reader sees where it ends.
std::string quoted(const std::string& word) {
  if (!word.empty() && word.find_first_of(" \t\n'\"\\$`;&|<>()*?") == std::string::npos) return word;
  std::string result = "'";
  for (const char each : word) result += each == '\'' ? std::string("'\\''") : std::string(1, each);
  return result + "'";
}

/// A command comes as one text or as its words.
std::string commandOf(const JSONValue& command) {
  if (command.string() != nullptr) return *command.string();
  std::string line;
  if (command.array() == nullptr) return line;
  for (const JSONValue& word : *command.array()) {
    if (word.string() == nullptr) continue;
    if (!line.empty()) line += ' ';
    line += quoted(*word.string());
  }
  return line;
}

}  // namespace

CardKind cardKind(std::string_view method) {
  return method.contains("requestUserInput") ? CardKind::Question : CardKind::Approval;
}

std::string shownMethod(std::string_view method) {
  constexpr std::string_view kDropped = "item/";
  std::string shown;
  for (auto at = method.find(kDropped); at != std::string_view::npos; at = method.find(kDropped)) {
    shown += method.substr(0, at);
    method.remove_prefix(at + kDropped.size());
  }
  return shown.append(method);
}

std::vector<std::string> decisionOptions(const wire::PendingRequest& request) {
  std::vector<std::string> options;
  for (const JSONValue& decision : request.availableDecisions) {
    if (decision.string() != nullptr) options.push_back(*decision.string());
  }
  if (options.empty()) return {"accept", "decline"};
  return options;
}

std::vector<ScopeOption> scopeOptions(const wire::PendingRequest& request) {
  const auto options = decisionOptions(request);
  if (cardKind(request.method) == CardKind::Question || options.size() < kOptionsWorthChoosing) return {};
  std::vector<ScopeOption> scopes;
  for (const std::string& option : options) {
    if (!option.starts_with("accept")) continue;
    scopes.push_back(
        {.decision = option, .label = option == "acceptForSession" ? "Approve for session" : "Approve once"});
  }
  return scopes;
}

JSONValue decisionResult(const wire::PendingRequest& request, const std::string& decision) {
  if (request.method.contains("permissions")) {
    const auto asked = request.params.find("permissions");
    const bool granted = decision == "accept" && asked != request.params.end();
    return JSONValue::Object{{"permissions", granted ? asked->second : JSONValue(JSONValue::Object{})},
                             {"scope", "turn"}};
  }
  if (request.method.contains("elicitation")) {
    return JSONValue::Object{{"action", decision}, {"content", JSONValue()}};
  }
  return JSONValue::Object{{"decision", decision}};
}

JSONValue questionResult(const wire::PendingRequest& request, const std::string& answer) {
  JSONValue::Object answers;
  if (const JSONValue::Array* questions = questionsOf(request)) {
    for (const JSONValue& question : *questions) {
      const JSONValue* id = question.member("id");
      if (id != nullptr && id->string() != nullptr) answers.insert_or_assign(*id->string(), answersOf(answer));
    }
  } else {
    answers.emplace("answer", answersOf(answer));
  }
  return JSONValue::Object{{"answers", std::move(answers)}};
}

std::vector<AskedQuestion> askedQuestions(const wire::PendingRequest& request) {
  std::vector<AskedQuestion> result;
  const JSONValue::Array* questions = questionsOf(request);
  if (questions == nullptr) return result;
  for (const JSONValue& each : *questions) {
    AskedQuestion question{.header = textOf(each, "header"), .question = textOf(each, "question"), .options = {}};
    const JSONValue* options = each.member("options");
    if (options != nullptr && options->array() != nullptr) {
      for (const JSONValue& option : *options->array()) {
        std::string label = option.string() != nullptr ? *option.string() : textOf(option, "label");
        if (!label.empty()) question.options.push_back({std::move(label), textOf(option, "description")});
      }
    }
    if (!question.question.empty() || !question.options.empty()) result.push_back(std::move(question));
  }
  return result;
}

std::vector<RequestFact> requestFacts(const wire::PendingRequest& request) {
  std::vector<RequestFact> facts;
  const auto add = [&](std::string label, std::string text, bool verbatim) {
    if (!text.empty()) facts.push_back({.label = std::move(label), .text = std::move(text), .verbatim = verbatim});
  };
  const JSONValue params(request.params);
  add("Reason", textOf(params, "reason"), false);
  add("Message", textOf(params, "message"), false);
  if (const JSONValue* command = params.member("command")) add("Command", commandOf(*command), true);
  add("Directory", textOf(params, "cwd"), true);
  add("Write access", textOf(params, "grantRoot"), true);
  std::string files;
  for (const FileChange& change : fileChanges(params)) {
    if (!files.empty()) files += '\n';
    files += change.kind.empty() ? change.path : change.path + " (" + change.kind + ")";
  }
  add("Files", std::move(files), true);
  return facts;
}

}  // namespace varnel::transcript
