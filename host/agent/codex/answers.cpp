// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/codex/answers.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/agent/codex/json_access.h"

namespace varnel::agent::codex {

namespace {

constexpr std::string_view kCommand = "item/commandExecution/requestApproval";
constexpr std::string_view kFileChange = "item/fileChange/requestApproval";
constexpr std::string_view kPermissions = "item/permissions/requestApproval";
constexpr std::string_view kUserInput = "item/tool/requestUserInput";
constexpr std::string_view kElicitation = "mcpServer/elicitation/request";
constexpr std::array kQuestions{kCommand, kFileChange, kPermissions, kUserInput, kElicitation};
constexpr std::array<std::string_view, 4> kDecisions{"accept", "acceptForSession", "decline", "cancel"};

std::unexpected<AgentError> invalid(std::string text) {
  return std::unexpected(AgentError{AgentError::Kind::Invalid, std::move(text)});
}

const JSONValue& paramOf(const wire::PendingRequest& request, std::string_view name) {
  static const JSONValue kNull;
  const auto found = request.params.find(name);
  return found == request.params.end() ? kNull : found->second;
}

Result<void> judgeDecision(const JSONValue& result) {
  const auto decision = optionalTextOf(result, "decision");
  if (!decision) return invalid("The answer has no decision that the agent takes from here.");
  if (std::ranges::find(kDecisions, *decision) == kDecisions.end()) {
    return invalid("The agent knows no decision \"" + *decision + "\".");
  }
  return {};
}

Result<void> judgePermissions(const wire::PendingRequest& request, const JSONValue& result) {
  const auto& granted = memberOf(result, "permissions");
  if (granted.object() == nullptr) return invalid("The answer has no permissions.");
  const auto scope = textOf(result, "scope");
  if (scope != "turn" && scope != "session") return invalid("Permissions are granted for a turn or a session.");
  if (!granted.object()->empty() && granted != paramOf(request, "permissions")) {
    return invalid("Only the permissions that were asked for can be granted.");
  }
  return {};
}

Result<void> judgeElicitation(const JSONValue& result) {
  const auto action = textOf(result, "action");
  if (action == "accept" || action == "decline" || action == "cancel") return {};
  return invalid("The agent knows no action \"" + action + "\".");
}

bool asks(const wire::PendingRequest& request, const std::string& questionId) {
  const auto* questions = paramOf(request, "questions").array();
  return questionId == "answer" || (questions != nullptr && std::ranges::any_of(*questions, [&](const auto& question) {
                                      return textOf(question, "id") == questionId;
                                    }));
}

Result<void> judgeAnswers(const wire::PendingRequest& request, const JSONValue& result) {
  const auto& answers = objectOf(memberOf(result, "answers"));
  if (answers.empty()) return invalid("The answer answers no question.");
  for (const auto& [questionId, given] : answers) {
    if (!asks(request, questionId)) return invalid("There is no question \"" + questionId + "\".");
    const auto& texts = listOf(given, "answers");
    const bool areTexts = std::ranges::all_of(texts, [](const auto& text) { return text.string() != nullptr; });
    if (texts.empty() || !areTexts) return invalid("The question \"" + questionId + "\" has no answer.");
  }
  return {};
}

}  // namespace

bool isQuestion(const std::string& method) {
  return std::ranges::find(kQuestions, method) != kQuestions.end();
}

JSONValue::Array decisionsFor(const std::string& method, const JSONValue& params) {
  if (method == kFileChange) return {"accept", "acceptForSession", "decline"};
  if (method != kCommand) return {};
  // Objects among them would be rules for good. That a session's approval is taken is never said.
  JSONValue::Array decisions;
  for (const auto& decision : listOf(params, "availableDecisions")) {
    if (decision.string() != nullptr) decisions.push_back(decision);
  }
  const auto accept = std::ranges::find(decisions, JSONValue("accept"));
  if (accept != decisions.end() && std::ranges::find(decisions, JSONValue("acceptForSession")) == decisions.end()) {
    decisions.insert(accept + 1, "acceptForSession");
  }
  return decisions;
}

Result<void> judge(const wire::PendingRequest& request, const JSONValue& result) {
  if (request.method == kPermissions) return judgePermissions(request, result);
  if (request.method == kUserInput) return judgeAnswers(request, result);
  if (request.method == kElicitation) return judgeElicitation(result);
  return judgeDecision(result);
}

}  // namespace varnel::agent::codex
