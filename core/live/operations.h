// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json/value.h"
#include "core/live/request.h"
#include "core/wire/bodies.h"
#include "core/wire/session.h"

/// Every operation of the bridge as a `Call`, under its name. Ids go into the path as they are given unless said
/// otherwise.
namespace varnel::live::operations {

Call claim(const base::Url& baseURL, std::string secret, std::string deviceName);
Call sessions();
Call projects();
Call models();
Call rateLimit();
Call usage(const std::optional<std::string>& sessionId);
Call archivedSessions(const std::optional<std::string>& cursor);
Call search(std::string_view query, const std::optional<std::string>& cursor);
Call interrupt(std::string_view sessionId);
Call rename(std::string_view sessionId, std::string name);
Call archive(std::string_view sessionId, bool unarchive);
/// The id is percent-encoded, so that nothing in it can start a query.
Call session(std::string_view sessionId);
Call sendMessage(std::string_view sessionId, std::string text, const wire::ConversationPreferences& preferences,
                 std::vector<wire::UploadedAttachment> attachments);
Call startGoal(std::string_view sessionId, std::string objective, const wire::ConversationPreferences& preferences,
               std::vector<wire::UploadedAttachment> attachments);
Call updateSettings(std::string_view sessionId, const wire::ConversationPreferences& preferences);
/// As `sendMessage`, once the running turn has ended.
Call queueMessage(std::string_view sessionId, std::string text, const wire::ConversationPreferences& preferences,
                  std::vector<wire::UploadedAttachment> attachments);
/// Takes one queued message back, or all without an id.
Call unqueue(std::string_view sessionId, const std::optional<std::string>& messageId);
Call createSession(const wire::NewSessionBody& body);
/// The id is percent-encoded.
Call resolve(std::string_view requestId, json::JSONValue result);
Call track(std::optional<std::string> sessionId, bool pin, std::optional<std::string> action);

}  // namespace varnel::live::operations
