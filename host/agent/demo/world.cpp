// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/world.h"

#include <algorithm>
#include <chrono>

#include "host/agent/demo/answers.h"
#include "host/agent/demo/catalogue.h"
#include "host/agent/demo/crowd.h"
#include "host/agent/demo/history.h"
#include "host/agent/demo/reply_writer.h"

namespace varnel::agent::demo {

namespace {

double systemNow() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

DemoOptions withClock(DemoOptions options) {
  if (!options.now) options.now = systemNow;
  if (!(options.speed > 0)) options.speed = 1.0;
  return options;
}

std::unexpected<AgentError> failure(AgentError::Kind kind, std::string text) {
  return std::unexpected(AgentError{kind, std::move(text)});
}

std::string trimmed(const std::string& text) {
  const std::size_t from = text.find_first_not_of(" \t\r\n");
  if (from == std::string::npos) return {};
  return text.substr(from, text.find_last_not_of(" \t\r\n") - from + 1);
}

/// Most recently changed first; of equal times the order does not change from call to call.
void sortByChange(std::vector<const DemoConversation*>& conversations) {
  std::ranges::sort(conversations, [](const DemoConversation* a, const DemoConversation* b) {
    if (a->summary.updatedAt != b->summary.updatedAt) return a->summary.updatedAt > b->summary.updatedAt;
    return a->summary.id < b->summary.id;
  });
}

/// Puts the preferences in order; Invalid when they or the message are not to be taken.
Result<void> check(TurnInput& input, const wire::ConversationPreferences& before) {
  auto settled = settle(std::move(input.preferences), before);
  if (!settled) return std::unexpected(settled.error());
  input.preferences = *std::move(settled);
  if (trimmed(input.text).empty() && input.attachments.empty()) {
    return failure(AgentError::Kind::Invalid, "There is nothing in the message.");
  }
  return {};
}

bool asksToGoOn(const std::string& text) {
  return std::ranges::any_of(std::initializer_list<std::string_view>{"continue", "Continue", "resume", "go on"},
                             [&](std::string_view word) { return text.find(word) != std::string::npos; });
}

bool isOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
  return std::ranges::find(words, word) != words.end();
}

}  // namespace

World::World(boost::asio::any_io_executor executor, DemoOptions options)
    : m_executor(std::move(executor)),
      m_options(withClock(std::move(options))),
      m_stage{.seed = m_options.seed,
              .speed = m_options.speed,
              .now = m_options.now,
              .report = [this](const Change& change) { report(change); },
              .spend =
                  [this](std::int64_t tokens) {
                    m_usage.spend(tokens);
                    report({.kind = Change::Kind::Usage});
                  }},
      m_usage(m_options.seed, m_options.now) {}

void World::report(const Change& change) {
  if (m_onChange) m_onChange(change);
}

void World::start(std::function<void(const Change&)> onChange) {
  m_onChange = std::move(onChange);
  if (std::exchange(m_made, true)) return;
  const double now = m_options.now();
  for (const auto& source : library().conversations) {
    Told told = tellHistory(source, m_options.seed, now);
    Place& place = add(std::move(told.conversation));
    if (told.live) performerOf(place).carryOn(std::move(*told.live), std::move(told.waiting));
  }
  for (auto& conversation : makeArchived(m_options.seed, now)) add(std::move(conversation));
  if (m_options.largeConversationItems > 0) add(makeLarge(m_options.seed, now, m_options.largeConversationItems));
  for (std::size_t i = 0; i < m_options.extraConversations; ++i) add(makeExtra(m_options.seed, now, i));
}

void World::stop() {
  m_onChange = {};
  for (auto& [id, place] : m_places) {
    if (place.performer) place.performer->halt();
  }
}

World::Place& World::add(std::unique_ptr<DemoConversation> conversation) {
  const std::string id = conversation->summary.id;
  return m_places.insert_or_assign(id, Place{std::move(conversation), {}, {}}).first->second;
}

Performer& World::performerOf(Place& place) {
  if (!place.performer) place.performer = std::make_unique<Performer>(m_executor, m_stage, *place.conversation);
  return *place.performer;
}

Result<World::Place*> World::open(const std::string& sessionId) {
  const auto place = m_places.find(sessionId);
  if (place == m_places.end())
    return failure(AgentError::Kind::NotFound, "There is no conversation " + sessionId + ".");
  return &place->second;
}

Result<World::Place*> World::openUnarchived(const std::string& sessionId) {
  auto place = open(sessionId);
  if (place && (*place)->conversation->archived) {
    return failure(AgentError::Kind::Conflict, "This conversation is archived.");
  }
  return place;
}

const DemoConversation* World::find(const std::string& sessionId) const {
  const auto place = m_places.find(sessionId);
  return place == m_places.end() ? nullptr : place->second.conversation.get();
}

std::vector<wire::SessionSummary> World::sessions() const {
  std::vector<const DemoConversation*> found;
  for (const auto& [id, place] : m_places) {
    if (!place.conversation->archived) found.push_back(place.conversation.get());
  }
  sortByChange(found);
  std::vector<wire::SessionSummary> result;
  result.reserve(found.size());
  for (const DemoConversation* conversation : found) result.push_back(conversation->summary);
  return result;
}

std::vector<wire::ArchivedSession> World::archived() const {
  std::vector<const DemoConversation*> found;
  for (const auto& [id, place] : m_places) {
    if (place.conversation->archived) found.push_back(place.conversation.get());
  }
  sortByChange(found);
  std::vector<wire::ArchivedSession> result;
  for (const DemoConversation* conversation : found) {
    const auto& summary = conversation->summary;
    result.push_back({summary.id, summary.name, summary.cwd, summary.updatedAt});
  }
  return result;
}

Result<Conversation> World::conversation(const std::string& sessionId) {
  const auto place = open(sessionId);
  if (!place) return std::unexpected(place.error());
  const DemoConversation& found = *(*place)->conversation;
  return Conversation{found.summary, found.items, found.requests};
}

Result<std::string> World::createSession(NewSession session) {
  using enum AgentError::Kind;
  if (!session.cwd.starts_with('/')) return failure(Invalid, "A session needs an absolute directory.");
  if (!isOneOf(session.sandbox, {"read-only", "workspace-write", "danger-full-access"})) {
    return failure(Invalid, "The agent knows no sandbox \"" + session.sandbox + "\".");
  }
  if (!isOneOf(session.approvalPolicy, {"on-request", "never"})) {
    return failure(Invalid, "The agent knows no approval policy \"" + session.approvalPolicy + "\".");
  }
  if (auto checked = check(session.firstTurn, defaultPreferences()); !checked) return std::unexpected(checked.error());

  auto conversation = std::make_unique<DemoConversation>();
  conversation->ids = IdStream(m_options.seed, "created/" + std::to_string(++m_created));
  conversation->summary.id = conversation->ids.uuid();
  conversation->summary.cwd = session.cwd;
  conversation->summary.project = projectOf(conversation->summary);
  conversation->sandbox = session.sandbox;
  conversation->approvalPolicy = session.approvalPolicy;
  std::string id = conversation->summary.id;
  Place& place = add(std::move(conversation));
  performerOf(place).scribe().touch();
  performerOf(place).scribe().report(Change::Kind::List);
  if (auto sent = sendMessage(id, std::move(session.firstTurn)); !sent) return std::unexpected(sent.error());
  return id;
}

/// Takes the preferences and writes the message down; false when it was received before.
Result<bool> World::receive(Place& place, TurnInput& input) {
  DemoConversation& conversation = *place.conversation;
  const auto before = conversation.summary.turnPreferences.value_or(defaultPreferences());
  if (auto checked = check(input, before); !checked) return std::unexpected(checked.error());
  if (!input.clientMessageId.empty() && !conversation.heard.insert(input.clientMessageId).second) return false;
  Scribe& scribe = performerOf(place).scribe();
  if (conversation.summary.turnPreferences != input.preferences) {
    conversation.summary.turnPreferences = input.preferences;
    scribe.report(Change::Kind::Settings);
  }
  scribe.addUserMessage(input);
  return true;
}

Result<void> World::sendMessage(const std::string& sessionId, TurnInput input) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  const auto isNew = receive(**place, input);
  if (!isNew) return std::unexpected(isNew.error());
  if (!*isNew) return {};
  DemoConversation& conversation = *(*place)->conversation;
  Performer& performer = performerOf(**place);
  if (performer.isBusy()) {
    performer.steer(input.text);
  } else if ((*place)->goal && asksToGoOn(input.text)) {
    pursue(**place);
  } else {
    performer.play(writeReply(m_options.seed, conversation, input));
  }
  ++conversation.messages;
  return {};
}

Result<void> World::startGoal(const std::string& sessionId, TurnInput input) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  const auto isNew = receive(**place, input);
  if (!isNew) return std::unexpected(isNew.error());
  if (!*isNew) return {};
  Performer& performer = performerOf(**place);
  if (performer.isBusy()) performer.interrupt();
  (*place)->goal = Goal{std::move(input), 0};
  pursue(**place);
  ++(*place)->conversation->messages;
  return {};
}

/// Plays the turn the goal has come to and those after it. A goal that was interrupted keeps its place.
void World::pursue(Place& place) {
  const auto script = [&place] { return writeGoalTurn(*place.conversation, place.goal->input, place.goal->turn); };
  performerOf(place).play(script().value_or(Script{}), [&place, script] {
    ++place.goal->turn;
    auto next = script();
    if (!next) place.goal.reset();
    return std::move(next).value_or(Script{});
  });
}

Result<void> World::updateSettings(const std::string& sessionId, wire::ConversationPreferences preferences) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  auto& current = (*place)->conversation->summary.turnPreferences;
  auto settled = settle(std::move(preferences), current.value_or(defaultPreferences()));
  if (!settled) return std::unexpected(settled.error());
  current = *settled;
  performerOf(**place).scribe().report(Change::Kind::Settings);
  return {};
}

Result<void> World::interrupt(const std::string& sessionId) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  Performer& performer = performerOf(**place);
  if (!performer.isBusy()) return failure(AgentError::Kind::Conflict, "Nothing is running in this conversation.");
  performer.interrupt();
  return {};
}

Result<void> World::rename(const std::string& sessionId, const std::string& name) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  const std::string words = trimmed(name);
  if (words.empty()) return failure(AgentError::Kind::Invalid, "A name must not be empty.");
  auto& summary = (*place)->conversation->summary;
  summary.name = words;
  summary.project = projectOf(summary);
  performerOf(**place).scribe().report(Change::Kind::Settings);
  return {};
}

Result<void> World::archive(const std::string& sessionId) {
  const auto place = openUnarchived(sessionId);
  if (!place) return std::unexpected(place.error());
  Performer& performer = performerOf(**place);
  if (performer.isBusy()) performer.interrupt();
  (*place)->conversation->archived = true;
  performer.scribe().report(Change::Kind::List);
  return {};
}

Result<void> World::unarchive(const std::string& sessionId) {
  const auto place = open(sessionId);
  if (!place) return std::unexpected(place.error());
  if (!(*place)->conversation->archived) {
    return failure(AgentError::Kind::Conflict, "This conversation is not archived.");
  }
  (*place)->conversation->archived = false;
  performerOf(**place).scribe().report(Change::Kind::List);
  return {};
}

Result<void> World::resolve(const std::string& requestId, const json::JSONValue& result) {
  for (auto& [id, place] : m_places) {
    DemoConversation& conversation = *place.conversation;
    const auto request = std::ranges::find(conversation.requests, requestId, &wire::PendingRequest::id);
    if (request != conversation.requests.end()) {
      const auto verdict = judge(*request, result);
      if (!verdict) return std::unexpected(verdict.error());
      performerOf(place).answer(requestId, *verdict);
      return {};
    }
    if (conversation.closedRequests.contains(requestId)) {
      return failure(AgentError::Kind::Conflict, "This request was already answered.");
    }
  }
  return failure(AgentError::Kind::NotFound, "There is no request " + requestId + ".");
}

}  // namespace varnel::agent::demo
