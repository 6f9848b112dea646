// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/library.h"

#include <stdexcept>

#include "host/agent/demo/content.h"

namespace varnel::agent::demo {

namespace {

std::vector<std::string> split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
  }
  return parts;
}

/// Lines of `name | directory | question | answer`; lines that begin with # are remarks.
std::vector<ArchiveEntry> readArchive(std::string_view text) {
  std::vector<ArchiveEntry> entries;
  for (const std::string& line : split(text, "\n")) {
    if (line.empty() || line.starts_with('#')) continue;
    std::vector<std::string> parts = split(line, " | ");
    if (parts.size() != 4) throw std::logic_error("not a line of the archive: " + line);
    entries.push_back({parts[0], parts[1], parts[2], parts[3]});
  }
  return entries;
}

Library read() {
  Library result;
  for (const ContentFile& file : contentFiles()) {
    if (file.name.starts_with("conversations/")) {
      result.conversations.push_back({std::string(file.name), parseScript(file.name, file.text)});
    } else if (file.name.starts_with("replies/")) {
      ScriptFile script = parseScript(file.name, file.text);
      std::vector<std::string> keywords = split(script.get("keywords"), ", ");
      result.replies.push_back({std::move(keywords), std::move(script)});
    } else if (file.name.starts_with("plans/")) {
      result.plans.push_back(parseScript(file.name, file.text));
    } else if (file.name.starts_with("goals/")) {
      result.goals.push_back(parseScript(file.name, file.text));
    } else if (file.name == "archive.txt") {
      result.archive = readArchive(file.text);
    }
  }
  return result;
}

}  // namespace

const Library& library() {
  static const Library kLibrary = read();
  return kLibrary;
}

}  // namespace varnel::agent::demo
