// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/json/value.h"

/// What the agent changed in files, or asks to change.
namespace varnel::transcript {

struct FileChange {
  std::string path;
  std::string kind;  ///< the agent's word: "add", "delete", "update"; may be empty
  std::string diff;  ///< unified, or the whole file where it is added or deleted
  bool operator==(const FileChange&) const = default;
};

/// Those under "changes" (a list with paths, or an object by path) or "fileChanges"; empty when there is none.
std::vector<FileChange> fileChanges(const json::JSONValue& detail);

struct DiffLine {
  enum class Kind { Context, Added, Removed, Heading };
  Kind kind = Kind::Context;
  std::string_view text;  ///< without the sign in front of it
  bool operator==(const DiffLine&) const = default;
};

/// The lines of a change. A file that is added or deleted as a whole comes without signs: all its lines are of that
/// kind. Views into `change`.
std::vector<DiffLine> diffLines(const FileChange& change);

}  // namespace varnel::transcript
