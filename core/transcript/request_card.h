// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/json/value.h"
#include "core/wire/request.h"

/// How a request of the agent is shown, and what is sent back to it.
namespace varnel::transcript {

enum class CardKind { Approval, Question };
CardKind cardKind(std::string_view method);

/// The method without its "item/" parts, for reading.
std::string shownMethod(std::string_view method);

/// The decisions that are strings, in their order; "accept" and "decline" when there is none.
std::vector<std::string> decisionOptions(const wire::PendingRequest& request);

struct ScopeOption {
  std::string decision;
  std::string label;
  bool operator==(const ScopeOption&) const = default;
};
/// What an approval may be good for; empty when there is nothing to choose.
std::vector<ScopeOption> scopeOptions(const wire::PendingRequest& request);

json::JSONValue decisionResult(const wire::PendingRequest& request, const std::string& decision);
/// Every question of the request gets the same answer, as it was typed.
json::JSONValue questionResult(const wire::PendingRequest& request, const std::string& answer);

/// A question in its words; other members of what the agent sent are not needed to answer it.
struct AskedQuestion {
  struct Option {
    std::string label;
    std::string description;
    bool operator==(const Option&) const = default;
  };
  std::string header;
  std::string question;
  std::vector<Option> options;
  bool operator==(const AskedQuestion&) const = default;
};
/// The questions that have a text or options, in their order.
std::vector<AskedQuestion> askedQuestions(const wire::PendingRequest& request);

/// What has to be read before an answer is given, in words: a label and the whole of its text.
struct RequestFact {
  std::string label;
  std::string text;
  bool verbatim = false;  ///< a command or a path: every character counts
  bool operator==(const RequestFact&) const = default;
};
std::vector<RequestFact> requestFacts(const wire::PendingRequest& request);

}  // namespace varnel::transcript
