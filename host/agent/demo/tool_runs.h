// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "host/agent/demo/script.h"

/// Tools and requests in the agent's own words.
namespace varnel::agent::demo {

struct FileEdit {
  std::string path;
  std::string kind;  ///< add, update or delete
  std::string diff;
};

ToolRun commandRun(std::string command, std::string cwd, std::string output, int exitCode);
ToolRun editRun(const std::vector<FileEdit>& edits);
/// `outcome` holds `arguments` and either `result` or `error`.
ToolRun toolCallRun(const std::string& server, const std::string& name, json::JSONValue::Object outcome);
ToolRun searchRun(const std::string& query);
ToolRun delegateRun(const std::string& prompt);
ToolRun imageViewRun(const std::string& name, const std::string& path);

/// Asks whether the tool may run: a command, a change of files, or a tool of another server.
Ask askAbout(ToolRun subject, const std::string& reason);
/// Asks without a tool: `permissions`, `question` or `elicitation`.
Ask askPlainly(const std::string& kind, json::JSONValue::Object params);

inline constexpr const char* kCommandApproval = "item/commandExecution/requestApproval";
inline constexpr const char* kFileChangeApproval = "item/fileChange/requestApproval";
inline constexpr const char* kPermissionsApproval = "item/permissions/requestApproval";
inline constexpr const char* kUserInput = "item/tool/requestUserInput";
inline constexpr const char* kElicitation = "mcpServer/elicitation/request";

}  // namespace varnel::agent::demo
