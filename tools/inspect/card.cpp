// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/card.h"

#include "core/json/text.h"
#include "core/transcript/request_card.h"
#include "core/wire/codec.h"
#include "core/wire/request.h"

namespace varnel::inspect {
namespace {

using json::JSONValue;

/// An absent member is that text; one of another type is refused.
std::expected<std::string, std::string> textMember(const JSONValue& input, std::string_view name, std::string absent) {
  const JSONValue* value = input.member(name);
  if (value == nullptr) return absent;
  if (value->string() == nullptr) return std::unexpected(std::string(name) + ": expected a string");
  return *value->string();
}

JSONValue described(const wire::PendingRequest& request, const std::string& decision, const std::string& answer) {
  const bool question = transcript::cardKind(request.method) == transcript::CardKind::Question;
  JSONValue::Array options;
  for (const std::string& option : transcript::decisionOptions(request)) options.emplace_back(option);
  JSONValue::Array picker;
  for (const auto& scope : transcript::scopeOptions(request)) picker.emplace_back(scope.label);
  return JSONValue::Object{{"kind", question ? "question" : "approval"},
                           {"options", std::move(options)},
                           {"picker", std::move(picker)},
                           {"result", question ? transcript::questionResult(request, answer)
                                               : transcript::decisionResult(request, decision)}};
}

Outcome card(std::string_view text) {
  const auto input = json::parse(text);
  if (!input) return std::unexpected(input.error().message());
  const JSONValue* given = input->member("request");
  if (given == nullptr) return std::unexpected("request: missing");
  const auto requestText = json::write(*given);
  if (!requestText) return std::unexpected(requestText.error().message());
  const auto request = wire::decode<wire::PendingRequest>(*requestText);
  if (!request) return std::unexpected("request: " + request.error().message());
  const auto decision = textMember(*input, "decision", "accept");
  if (!decision) return std::unexpected(decision.error());
  const auto answer = textMember(*input, "answer", "");
  if (!answer) return std::unexpected(answer.error());
  auto result = json::write(described(*request, *decision, *answer));
  if (!result) return std::unexpected(result.error().message());
  return *std::move(result);
}

}  // namespace

std::optional<Converter> cardConverter(const std::vector<std::string>& parameters) {
  if (!parameters.empty()) return std::nullopt;
  return card;
}

}  // namespace varnel::inspect
