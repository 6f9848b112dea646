// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/http/routes.h"

/// One function for each JSON operation: parse, ask the bridge, answer. `ids` holds the conversation's or the
/// request's id where the path has one.
namespace varnel::http::handlers {

service::Task<std::string> claim(Call call);
service::Task<std::string> listSessions(Call call);
service::Task<std::string> createSession(Call call);
service::Task<std::string> listArchived(Call call);
service::Task<std::string> showSession(Call call);
service::Task<std::string> sendMessage(Call call);
service::Task<std::string> queueMessage(Call call);
service::Task<std::string> unqueue(Call call);
service::Task<std::string> startGoal(Call call);
service::Task<std::string> updateSettings(Call call);
service::Task<std::string> interrupt(Call call);
service::Task<std::string> rename(Call call);
service::Task<std::string> archive(Call call);
service::Task<std::string> unarchive(Call call);
service::Task<std::string> listProjects(Call call);
service::Task<std::string> listModels(Call call);
service::Task<std::string> showRateLimit(Call call);
service::Task<std::string> showUsage(Call call);
service::Task<std::string> search(Call call);
service::Task<std::string> resolve(Call call);
service::Task<std::string> track(Call call);

}  // namespace varnel::http::handlers
