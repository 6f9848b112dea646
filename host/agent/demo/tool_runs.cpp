// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/tool_runs.h"

#include <utility>

namespace varnel::agent::demo {

using json::JSONValue;
using Object = JSONValue::Object;
using Array = JSONValue::Array;

namespace {

/// How long the tool said it took, in milliseconds: made from its words, so that it looks measured and never changes.
std::size_t duration(const std::string& words) {
  std::size_t sum = 180;
  for (const char c : words) sum = (sum * 31 + static_cast<unsigned char>(c)) % 4000;
  return sum + 35;
}

std::string fileNames(const std::vector<FileEdit>& edits) {
  std::string names;
  for (const FileEdit& edit : edits) {
    if (!names.empty()) names += ", ";
    names += edit.path.substr(edit.path.rfind('/') + 1);
  }
  return names;
}

}  // namespace

ToolRun commandRun(std::string command, std::string cwd, std::string output, int exitCode) {
  ToolRun run;
  run.type = "commandExecution";
  run.title = command;
  run.before = Object{{"command", "/bin/bash -lc '" + command + "'"},
                      {"cwd", std::move(cwd)},
                      {"source", "unifiedExecStartup"},
                      {"commandActions", Array{Object{{"type", "unknown"}, {"command", command}}}},
                      {"aggregatedOutput", JSONValue()},
                      {"exitCode", JSONValue()},
                      {"durationMs", JSONValue()}};
  run.after = Object{
      {"durationMs", duration(command + output)}, {"aggregatedOutput", std::move(output)}, {"exitCode", exitCode}};
  run.status = exitCode == 0 ? "completed" : "failed";
  return run;
}

ToolRun editRun(const std::vector<FileEdit>& edits) {
  ToolRun run;
  run.type = "fileChange";
  run.title = fileNames(edits);
  run.seconds = 0.5;
  Array changes;
  for (const FileEdit& edit : edits) {
    changes.emplace_back(Object{{"path", edit.path}, {"kind", Object{{"type", edit.kind}}}, {"diff", edit.diff}});
  }
  run.before = Object{{"changes", std::move(changes)}};
  return run;
}

ToolRun toolCallRun(const std::string& server, const std::string& name, Object outcome) {
  ToolRun run;
  run.type = "mcpToolCall";
  run.title = server + "/" + name;
  run.before = Object{{"server", server},      {"tool", name},         {"arguments", std::move(outcome["arguments"])},
                      {"result", JSONValue()}, {"error", JSONValue()}, {"durationMs", JSONValue()}};
  run.status = outcome["error"].isNull() ? "completed" : "failed";
  run.after = Object{{"durationMs", duration(run.title)},
                     {"result", std::move(outcome["result"])},
                     {"error", std::move(outcome["error"])}};
  return run;
}

ToolRun searchRun(const std::string& query) {
  ToolRun run;
  run.type = "webSearch";
  run.title = query;
  run.before = Object{{"query", query}, {"action", Object{{"type", "search"}, {"query", query}}}};
  return run;
}

ToolRun delegateRun(const std::string& prompt) {
  ToolRun run;
  run.type = "collabAgentToolCall";
  run.title = "spawnAgent";
  run.before = Object{{"tool", "spawnAgent"}, {"prompt", prompt},         {"receiverThreadIds", Array{}},
                      {"model", JSONValue()}, {"agentsStates", Object{}}, {"reasoningEffort", JSONValue()}};
  run.after = Object{{"agentsStates", Object{{"/root/second", Object{{"status", "completed"}}}}}};
  run.seconds = 1.2;
  return run;
}

ToolRun imageViewRun(const std::string& name, const std::string& path) {
  ToolRun run;
  run.type = "imageView";
  run.title = name;
  run.before = Object{{"path", path}};
  run.seconds = 0.4;
  return run;
}

Ask askAbout(ToolRun subject, const std::string& reason) {
  Ask ask;
  ask.params = Object{{"reason", reason}};
  if (subject.type == "fileChange") {
    ask.method = kFileChangeApproval;
    ask.params["grantRoot"] = JSONValue();
    ask.params["changes"] = subject.before["changes"];
  } else if (subject.type == "mcpToolCall") {
    ask.method = kElicitation;
    ask.params = Object{{"serverName", subject.before["server"]},
                        {"mode", "form"},
                        {"_meta", Object{{"codex_approval_kind", "mcp_tool_call"}}},
                        {"message", reason},
                        {"requestedSchema", Object{{"type", "object"}, {"properties", Object{}}}}};
  } else {
    ask.method = kCommandApproval;
    ask.params["command"] = subject.before["command"];
    ask.params["cwd"] = subject.before["cwd"];
    ask.params["commandActions"] = subject.before["commandActions"];
    ask.params["environmentId"] = "local";
  }
  if (ask.method == kElicitation) {
    ask.decisions = Array{"accept", "decline"};
  } else {
    ask.decisions = Array{"accept", "acceptForSession", "decline"};
  }
  ask.subject = std::move(subject);
  return ask;
}

Ask askPlainly(const std::string& kind, Object params) {
  Ask ask;
  ask.params = std::move(params);
  if (kind == "question") {
    ask.method = kUserInput;
    ask.params.emplace("isBlocking", true);
    ask.params.emplace("autoResolutionMs", JSONValue());
  } else {
    ask.method = kind == "permissions" ? kPermissionsApproval : kElicitation;
    ask.decisions = Array{"accept", "decline"};
  }
  return ask;
}

}  // namespace varnel::agent::demo
