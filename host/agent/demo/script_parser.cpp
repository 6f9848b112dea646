// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "host/agent/demo/script_parser.h"

#include <array>
#include <charconv>
#include <stdexcept>

#include "core/json/text.h"
#include "host/agent/demo/tool_runs.h"

namespace varnel::agent::demo {

namespace {

using Attributes = std::map<std::string, std::string, std::less<>>;

struct Block {
  std::string kind;
  std::string word;  ///< the first word after the kind that is not `name=value`
  Attributes attributes;
  std::string body;
  std::size_t line = 0;
};

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

void trimBlankEnds(std::string& text) {
  text.erase(text.find_last_not_of('\n') + 1);
  text.erase(0, std::min(text.find_first_not_of('\n'), text.size()));
}

double number(std::string_view text, double fallback) {
  double value = fallback;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

/// Told from the hunks of a diff, which go on with a sign.
bool isBlockLine(std::string_view line) {
  return line.size() > 3 && line.starts_with("@@ ") && line[3] >= 'a' && line[3] <= 'z';
}

class Parser {
 public:
  Parser(std::string_view name, std::string_view text) : m_name(name) { split(text); }

  ScriptFile run() {
    while (m_next < m_blocks.size()) {
      const Block& block = peek();
      if (block.kind == "turn") {
        m_file.turns.push_back(makeTurn(take()));
      } else if (block.kind == "live") {
        take();
        turn().live.emplace();
      } else {
        Script& script = turn().live ? *turn().live : turn().told;
        script.push_back(step());
      }
    }
    return std::move(m_file);
  }

 private:
  void split(std::string_view text) {
    std::size_t number = 0;
    while (!text.empty()) {
      const std::string_view line = takeLine(text);
      ++number;
      if (isBlockLine(line)) {
        m_blocks.push_back(makeBlock(line.substr(3), number));
      } else if (!m_blocks.empty()) {
        m_blocks.back().body.append(line).append("\n");
      } else if (const std::size_t colon = line.find(": "); colon != std::string_view::npos) {
        m_file.head.emplace(line.substr(0, colon), line.substr(colon + 2));
      }
    }
    for (Block& block : m_blocks) trimBlankEnds(block.body);
  }

  static Block makeBlock(std::string_view line, std::size_t number) {
    Block block;
    block.line = number;
    while (!line.empty()) {
      const std::size_t end = line.find(' ');
      const std::string_view word = line.substr(0, end);
      line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
      if (const std::size_t equals = word.find('='); equals != std::string_view::npos) {
        block.attributes.emplace(word.substr(0, equals), word.substr(equals + 1));
      } else {
        (block.kind.empty() ? block.kind : block.word) = word;
      }
    }
    return block;
  }

  [[noreturn]] void fail(const Block& block, const std::string& reason) const {
    throw std::logic_error(m_name + ":" + std::to_string(block.line) + ": " + reason);
  }

  [[nodiscard]] const Block& peek() const { return m_blocks.at(m_next); }
  const Block& take() { return m_blocks.at(m_next++); }
  [[nodiscard]] bool at(std::string_view kind) const { return m_next < m_blocks.size() && peek().kind == kind; }

  ScriptTurn& turn() {
    if (m_file.turns.empty()) m_file.turns.emplace_back();
    return m_file.turns.back();
  }

  static ScriptTurn makeTurn(const Block& block) {
    ScriptTurn turn;
    turn.ago = parseAgo(attribute(block, "ago", "1h"));
    turn.every = number(attribute(block, "every"), turn.every);
    turn.state = attribute(block, "state", "completed");
    return turn;
  }

  static std::string attribute(const Block& block, std::string_view name, std::string_view fallback = {}) {
    const auto it = block.attributes.find(name);
    return it == block.attributes.end() ? std::string(fallback) : it->second;
  }

  [[nodiscard]] json::JSONValue::Object object(const Block& block) const {
    auto value = json::parse(block.body);
    if (!value) fail(block, value.error().message());
    if (value->object() == nullptr) fail(block, "expected an object");
    return std::move(*value->object());
  }

  Step step() {
    const Block& block = take();
    const std::string& body = block.body;
    if (block.kind == "user") return {Hear{body}};
    if (block.kind == "say") return {Say{body, false}};
    if (block.kind == "answer") return {Say{body, true}};
    if (block.kind == "think") return {Think{body}};
    if (block.kind == "fail") return {Fail{body}};
    if (block.kind == "pause") return {Pause{number(attribute(block, "seconds"), 1)}};
    if (block.kind == "plan") return {plan(block)};
    if (block.kind == "ask") return {ask(block)};
    return {tool(block)};
  }

  [[nodiscard]] ToolRun tool(const Block& block) const {
    const std::string_view body = block.body;
    ToolRun run;
    if (block.kind == "command") {
      const std::size_t end = body.find('\n');
      run = commandRun(std::string(body.substr(0, end)), m_file.get("cwd", "{{cwd}}"),
                       end == std::string_view::npos ? "" : std::string(body.substr(end + 1)) + "\n",
                       static_cast<int>(number(attribute(block, "exit"), 0)));
    } else if (block.kind == "edit") {
      run = editRun(edits(block));
    } else if (block.kind == "tool") {
      run = toolCallRun(attribute(block, "server"), attribute(block, "name"), object(block));
    } else if (block.kind == "search") {
      run = searchRun(block.body);
    } else if (block.kind == "delegate") {
      run = delegateRun(block.body);
    } else {
      fail(block, "unknown block " + block.kind);
    }
    run.seconds = number(attribute(block, "seconds"), run.seconds);
    run.status = attribute(block, "status", run.status);
    return run;
  }

  [[nodiscard]] std::vector<FileEdit> edits(const Block& block) const {
    std::vector<FileEdit> result;
    std::string_view rest = block.body;
    while (!rest.empty()) {
      const std::string_view line = takeLine(rest);
      if (line.starts_with("=== ")) {
        const std::size_t space = line.find(' ', 4);
        if (space == std::string_view::npos) fail(block, "an edit without a path");
        result.push_back({std::string(line.substr(space + 1)), std::string(line.substr(4, space - 4)), {}});
      } else if (!result.empty()) {
        result.back().diff.append(line).append("\n");
      }
    }
    if (result.empty()) fail(block, "an edit without a file");
    return result;
  }

  [[nodiscard]] MovePlan plan(const Block& block) const {
    MovePlan result;
    std::string_view rest = block.body;
    while (!rest.empty()) {
      const std::string_view line = takeLine(rest);
      if (line.starts_with("[x] ")) {
        result.steps.push_back({std::string(line.substr(4)), "completed"});
      } else if (line.starts_with("[>] ")) {
        result.steps.push_back({std::string(line.substr(4)), "inProgress"});
      } else if (line.starts_with("[ ] ")) {
        result.steps.push_back({std::string(line.substr(4)), "pending"});
      } else if (!line.empty()) {
        result.explanation = line;
      }
    }
    if (result.steps.empty()) fail(block, "a plan without steps");
    return result;
  }

  Ask ask(const Block& block) {
    Ask result;
    if (block.word == "command" || block.word == "edit" || block.word == "tool") {
      result = askAbout(tool(take()), block.body);
    } else if (block.word == "permissions" || block.word == "question" || block.word == "elicitation") {
      result = askPlainly(block.word, object(block));
    } else {
      fail(block, "unknown request " + block.word);
    }
    if (at("accepted")) result.accepted = branch();
    if (at("declined")) result.declined = branch();
    if (!at("end")) fail(block, "a request without its @@ end");
    take();
    return result;
  }

  Script branch() {
    take();
    Script script;
    while (m_next < m_blocks.size() && !at("accepted") && !at("declined") && !at("end")) script.push_back(step());
    return script;
  }

  std::string m_name;
  ScriptFile m_file;
  std::vector<Block> m_blocks;
  std::size_t m_next = 0;
};

}  // namespace

std::string ScriptFile::get(std::string_view key, std::string_view fallback) const {
  const auto it = head.find(key);
  return it == head.end() ? std::string(fallback) : it->second;
}

ScriptFile parseScript(std::string_view name, std::string_view text) {
  return Parser(name, text).run();
}

double parseAgo(std::string_view text) {
  double seconds = 0;
  while (!text.empty()) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    const std::size_t unit = text.empty() ? std::string_view::npos : std::string_view("smhd").find(text.front());
    if (error != std::errc() || unit == std::string_view::npos)
      throw std::logic_error("not a time: " + std::string(text));
    constexpr std::array<double, 4> kUnits = {1, 60, 3600, 86400};
    seconds += value * kUnits[unit];
    text.remove_prefix(1);
  }
  return seconds;
}

}  // namespace varnel::agent::demo
