// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/json/value.h"
#include "core/wire/catalogue.h"

/// What the operations send and the answers that belong to one operation alone.
namespace varnel::wire {

struct EmptyBody {};
bool operator==(const EmptyBody&, const EmptyBody&);

/// The body of every answer that is not a success.
struct ServerError {
  std::string error;
};
bool operator==(const ServerError&, const ServerError&);

struct ClaimBody {
  std::string secret;
  std::string deviceName;
};
bool operator==(const ClaimBody&, const ClaimBody&);

struct ClaimResult {
  std::string deviceId;
  std::string token;
};
bool operator==(const ClaimResult&, const ClaimResult&);

struct RenameBody {
  std::string name;
};
bool operator==(const RenameBody&, const RenameBody&);

struct MessageBody {
  std::string text;
  std::string mode;
  std::string model;
  std::string reasoningEffort;
  std::string serviceTier;  ///< "default" for the default tier, never absent
  std::vector<UploadedAttachment> attachments;
};
bool operator==(const MessageBody&, const MessageBody&);

struct GoalBody {
  std::string objective;
  std::string mode;
  std::string model;
  std::string reasoningEffort;
  std::string serviceTier;
  std::vector<UploadedAttachment> attachments;
};
bool operator==(const GoalBody&, const GoalBody&);

struct SettingsBody {
  std::string mode;
  std::string model;
  std::string reasoningEffort;
  std::string serviceTier;
};
bool operator==(const SettingsBody&, const SettingsBody&);

struct NewSessionBody {
  std::string cwd;
  std::string mode;
  std::optional<std::string> model;
  std::optional<std::string> reasoningEffort;
  std::string sandbox;
  std::string approvalPolicy;
  bool acknowledgeHighRisk = false;
  std::string prompt;
};
bool operator==(const NewSessionBody&, const NewSessionBody&);

struct NewSessionResult {
  std::string threadId;
};
bool operator==(const NewSessionResult&, const NewSessionResult&);

struct ResolveBody {
  json::JSONValue result;
};
bool operator==(const ResolveBody&, const ResolveBody&);

struct TrackingBody {
  std::optional<std::string> sessionId;
  bool pin = false;
  std::optional<std::string> action;
};
bool operator==(const TrackingBody&, const TrackingBody&);

}  // namespace varnel::wire
