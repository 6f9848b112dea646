// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/reply_writer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <span>

#include "host/agent/demo/tool_runs.h"

namespace varnel::agent::demo {

namespace {

std::string lowerCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool isLetter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

/// A keyword of ASCII letters must begin a word; others may stand anywhere, as not every script parts its words.
bool mentions(std::string_view text, std::string_view keyword) {
  for (std::size_t at = text.find(keyword); at != std::string_view::npos; at = text.find(keyword, at + 1)) {
    if (at == 0 || !isLetter(keyword.front()) || !isLetter(text[at - 1])) return true;
  }
  return false;
}

bool mentionsAny(std::string_view text, std::span<const std::string_view> keywords) {
  return std::ranges::any_of(keywords, [&](std::string_view keyword) { return mentions(text, keyword); });
}

/// The reply most of whose keywords stand in the text, by their length: "simulate a failure" says more than "fail".
const ScriptFile& chooseReply(const std::string& text, IdStream& chance) {
  const ReplyTemplate* best = nullptr;
  std::size_t bestScore = 0;
  std::vector<const ReplyTemplate*> general;
  for (const ReplyTemplate& reply : library().replies) {
    if (reply.keywords.empty()) general.push_back(&reply);
    std::size_t score = 0;
    for (const std::string& word : reply.keywords) score += mentions(text, word) ? word.size() : 0;
    if (score <= bestScore) continue;
    best = &reply;
    bestScore = score;
  }
  return best != nullptr ? best->script : general.at(chance.below(general.size()))->script;
}

Words wordsFor(const DemoConversation& conversation, const TurnInput& input) {
  return Words{{"text", excerpt(input.text, 280)},
               {"topic", excerpt(input.text, 48)},
               {"cwd", conversation.summary.cwd.value_or("/")},
               {"project", conversation.summary.project}};
}

bool hasQuestion(const Script& script) {
  return std::ranges::any_of(script, [](const Step& step) { return std::holds_alternative<Ask>(step.what); });
}

Script refusal(const std::string& title) {
  return Script{{Say{"Understood, I leave that alone.", false}},
                {Say{"I did not go through with it: **" + title +
                         "** was declined, and nothing was changed.\n\nOn what you wrote:\n\n> {{text}}\n\nI can look "
                         "for a way that does without it, or you run it yourself and I go on from there.",
                     true}}};
}

/// Puts a question before the first tool for which `suits` holds; all that follows depends on the answer.
template <class Predicate>
void askFirst(Script& script, const std::string& reason, Predicate suits) {
  const auto at = std::ranges::find_if(script, [&](const Step& step) {
    const auto* run = std::get_if<ToolRun>(&step.what);
    return run != nullptr && suits(*run);
  });
  if (at == script.end()) return;
  Ask ask = askAbout(std::get<ToolRun>(at->what), reason);
  ask.declined = refusal(ask.subject->title);
  ask.accepted.assign(std::make_move_iterator(at + 1), std::make_move_iterator(script.end()));
  script.erase(at, script.end());
  script.push_back({std::move(ask)});
}

bool asksByChance(std::uint64_t seed, const DemoConversation& conversation) {
  IdStream chance(seed, conversation.summary.id + "/asks");
  return conversation.messages % 4 == 1 + chance.below(3);
}

void askWhereFit(Script& script, const std::string& text, std::uint64_t seed, const DemoConversation& conversation) {
  static constexpr auto kCallsForApproval =
      std::to_array<std::string_view>({"approv", "deploy", "delete", "sudo", "permission", "publish", "force"});
  if (hasQuestion(script)) return;
  const auto canAsk = [](const ToolRun& run) {
    return run.type == "commandExecution" || run.type == "fileChange" || run.type == "mcpToolCall";
  };
  if (mentionsAny(text, kCallsForApproval) || asksByChance(seed, conversation)) {
    askFirst(script, "This goes beyond what the sandbox allows by itself.", canAsk);
  } else if (conversation.sandbox == "read-only") {
    askFirst(script, "The session may only read; this would write.",
             [](const ToolRun& run) { return run.type == "fileChange"; });
  }
}

std::string sizeText(std::int64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + " bytes";
  if (bytes < 1'000'000) return std::to_string(bytes / 1000) + " kB";
  return std::to_string(bytes / 1'000'000) + " MB";
}

/// The agent looks at images and says what else it was given.
void lookAtAttachments(Script& script, const std::vector<TurnInput::Attachment>& attachments) {
  if (attachments.empty()) return;
  Script looks;
  std::string list = attachments.size() == 1 ? "You attached one file:\n" : "You attached these files:\n";
  for (const TurnInput::Attachment& attachment : attachments) {
    const auto& record = attachment.record;
    list += "\n- `" + record.name + "`, " + record.kind + ", " + sizeText(record.size);
    if (record.kind == "image") looks.push_back({imageViewRun(record.name, attachment.path)});
  }
  looks.insert(looks.begin(), {Say{std::move(list), false}});
  script.insert(script.begin(), std::make_move_iterator(looks.begin()), std::make_move_iterator(looks.end()));
}

}  // namespace

Script writeReply(std::uint64_t seed, const DemoConversation& conversation, const TurnInput& input) {
  IdStream chance(seed, conversation.summary.id + "/" + std::to_string(conversation.messages));
  const std::string text = lowerCase(input.text);
  const auto& plans = library().plans;
  const bool planning = input.preferences.mode == wire::CodexCollaborationMode::Plan;
  Script script = (planning ? plans.at(chance.below(plans.size())) : chooseReply(text, chance)).turns.front().told;
  if (!planning) askWhereFit(script, text, seed, conversation);
  lookAtAttachments(script, input.attachments);
  fill(script, wordsFor(conversation, input));
  return script;
}

std::optional<Script> writeGoalTurn(const DemoConversation& conversation, const TurnInput& input, std::size_t turn) {
  const auto& goals = library().goals;
  if (turn >= goals.size()) return std::nullopt;
  Script script = goals[turn].turns.front().told;
  if (turn == 0) lookAtAttachments(script, input.attachments);
  fill(script, wordsFor(conversation, input));
  return script;
}

}  // namespace varnel::agent::demo
