// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/answers.h"

#include <algorithm>

#include "host/agent/demo/tool_runs.h"

namespace varnel::agent::demo {

using json::JSONValue;

namespace {

std::unexpected<AgentError> invalid(std::string text) {
  return std::unexpected(AgentError{AgentError::Kind::Invalid, std::move(text)});
}

const std::string* stringMember(const JSONValue& value, std::string_view name) {
  const JSONValue* member = value.member(name);
  return member == nullptr ? nullptr : member->string();
}

Result<Verdict> judgeDecision(const JSONValue& result) {
  const std::string* decision = stringMember(result, "decision");
  if (decision == nullptr) return invalid("The answer has no decision.");
  if (*decision == "accept") return Verdict{.accepted = true, .forSession = false, .words = {}};
  if (*decision == "acceptForSession") return Verdict{.accepted = true, .forSession = true, .words = {}};
  if (*decision == "decline") return Verdict{};
  return invalid("The decision \"" + *decision + "\" is not one of accept, acceptForSession and decline.");
}

Result<Verdict> judgePermissions(const wire::PendingRequest& request, const JSONValue& result) {
  const JSONValue* granted = result.member("permissions");
  if (granted == nullptr || granted->object() == nullptr) return invalid("The answer has no permissions.");
  if (const std::string* scope = stringMember(result, "scope");
      scope == nullptr || (*scope != "turn" && *scope != "session")) {
    return invalid("The scope of permissions is turn or session.");
  }
  if (granted->object()->empty()) return Verdict{};
  const auto asked = request.params.find("permissions");
  if (asked == request.params.end() || *granted != asked->second) {
    return invalid("Only the permissions that were asked for can be granted.");
  }
  return Verdict{.accepted = true, .forSession = false, .words = {}};
}

Result<Verdict> judgeElicitation(const JSONValue& result) {
  const std::string* action = stringMember(result, "action");
  if (action == nullptr) return invalid("The answer has no action.");
  if (*action == "accept") return Verdict{.accepted = true, .forSession = false, .words = {}};
  if (*action == "decline" || *action == "cancel") return Verdict{};
  return invalid("The action \"" + *action + "\" is not one of accept, decline and cancel.");
}

bool asksFor(const wire::PendingRequest& request, const std::string& questionId) {
  if (questionId == "answer") return true;
  const auto questions = request.params.find("questions");
  if (questions == request.params.end() || questions->second.array() == nullptr) return false;
  return std::ranges::any_of(*questions->second.array(), [&](const JSONValue& question) {
    const std::string* id = stringMember(question, "id");
    return id != nullptr && *id == questionId;
  });
}

Result<Verdict> judgeQuestion(const wire::PendingRequest& request, const JSONValue& result) {
  const JSONValue* answers = result.member("answers");
  if (answers == nullptr || answers->object() == nullptr || answers->object()->empty()) {
    return invalid("The answer answers no question.");
  }
  Verdict verdict{.accepted = true, .forSession = false, .words = {}};
  for (const auto& [questionId, given] : *answers->object()) {
    if (!asksFor(request, questionId)) return invalid("There is no question \"" + questionId + "\".");
    const JSONValue* texts = given.member("answers");
    if (texts == nullptr || texts->array() == nullptr || texts->array()->empty()) {
      return invalid("The question \"" + questionId + "\" has no answer.");
    }
    for (const JSONValue& text : *texts->array()) {
      if (text.string() == nullptr) return invalid("An answer to \"" + questionId + "\" is not a text.");
      if (verdict.words.empty()) verdict.words = *text.string();
    }
  }
  return verdict;
}

}  // namespace

Result<Verdict> judge(const wire::PendingRequest& request, const JSONValue& result) {
  if (request.method == kUserInput) return judgeQuestion(request, result);
  if (request.method == kPermissionsApproval) return judgePermissions(request, result);
  if (request.method == kElicitation) return judgeElicitation(result);
  return judgeDecision(result);
}

}  // namespace varnel::agent::demo
