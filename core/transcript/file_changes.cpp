// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/transcript/file_changes.h"

#include <ranges>
#include <utility>

namespace varnel::transcript {
namespace {

using json::JSONValue;
using Kind = DiffLine::Kind;

std::string firstText(const JSONValue& value, std::initializer_list<std::string_view> members) {
  for (const std::string_view name : members) {
    const JSONValue* member = value.member(name);
    if (member != nullptr && member->string() != nullptr) return *member->string();
  }
  return {};
}

FileChange changeOf(std::string path, const JSONValue& value) {
  FileChange change{.path = std::move(path),
                    .kind = firstText(value, {"kind", "type"}),
                    .diff = firstText(value, {"diff", "unified_diff", "content"})};
  if (const JSONValue* kind = value.member("kind"); kind != nullptr && change.kind.empty()) {
    change.kind = firstText(*kind, {"type"});
  }
  return change;
}

bool isUnified(std::string_view diff) {
  return diff.starts_with("@@") || diff.contains("\n@@") || diff.starts_with("--- ") || diff.starts_with("diff ");
}

DiffLine lineOf(std::string_view line, bool inHunk) {
  if (!inHunk || line.starts_with("@@") || line.starts_with('\\')) return {.kind = Kind::Heading, .text = line};
  if (line.empty()) return {.kind = Kind::Context, .text = line};
  const auto kind = line.front() == '+' ? Kind::Added : line.front() == '-' ? Kind::Removed : Kind::Context;
  return {.kind = kind, .text = line.substr(1)};
}

}  // namespace

std::vector<FileChange> fileChanges(const JSONValue& detail) {
  std::vector<FileChange> changes;
  for (const std::string_view name : {"changes", "fileChanges"}) {
    const JSONValue* value = detail.member(name);
    if (value == nullptr) continue;
    if (value->array() != nullptr) {
      for (const JSONValue& each : *value->array()) {
        if (each.object() != nullptr) changes.push_back(changeOf(firstText(each, {"path"}), each));
      }
    } else if (value->object() != nullptr) {
      for (const auto& [path, each] : *value->object()) changes.push_back(changeOf(path, each));
    }
  }
  return changes;
}

std::vector<DiffLine> diffLines(const FileChange& change) {
  std::vector<DiffLine> lines;
  std::string_view rest = change.diff;
  if (rest.ends_with('\n')) rest.remove_suffix(1);
  if (rest.empty()) return lines;
  const bool unified = isUnified(rest);
  const Kind whole = change.kind == "add" ? Kind::Added : change.kind == "delete" ? Kind::Removed : Kind::Context;
  bool inHunk = false;
  for (const auto part : std::views::split(rest, '\n')) {
    const std::string_view line(part.begin(), part.end());
    if (!unified) {
      lines.push_back({.kind = whole, .text = line});
      continue;
    }
    if (line.starts_with("diff ")) inHunk = false;
    lines.push_back(lineOf(line, inHunk));
    if (line.starts_with("@@")) inHunk = true;
  }
  return lines;
}

}  // namespace varnel::transcript
