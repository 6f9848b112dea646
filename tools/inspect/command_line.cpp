// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/inspect/command_line.h"

#include <charconv>
#include <fstream>
#include <iterator>

namespace varnel::inspect {

namespace {

using Failure = std::optional<std::string>;

Failure setNumber(const std::string& text, std::int64_t least, std::int64_t& out) {
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, out);
  if (error == std::errc() && stopped == end && out >= least) return std::nullopt;
  return "not a number of at least " + std::to_string(least) + ": " + text;
}

Failure setSeconds(const std::string& text, std::optional<double>& out) {
  double seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, seconds);
  if (error != std::errc() || stopped != end || !(seconds > 0)) return "not a number of seconds: " + text;
  out = seconds;
  return std::nullopt;
}

Failure readToken(const std::string& file, CommandLine& out) {
  std::ifstream in(file, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(in), {});
  if (!in) return "cannot read the token's file " + file;
  while (text.ends_with('\n') || text.ends_with('\r')) text.pop_back();
  out.token = std::move(text);
  return std::nullopt;
}

Failure setOption(const std::string& name, const std::string& value, CommandLine& out) {
  if (name == "--base-url") {
    out.baseURL = value;
  } else if (name == "--token") {
    out.token = value;
  } else if (name == "--token-file") {
    return readToken(value, out);
  } else if (name == "--device-id") {
    out.deviceId = value;
  } else if (name == "--after") {
    return setNumber(value, 0, out.after);
  } else if (name == "--count") {
    return setNumber(value, 1, out.count.emplace());
  } else if (name == "--state-dir") {
    out.stateDirectory = value;
  } else if (name == "--open") {
    out.open = value;
  } else if (name == "--for") {
    return setSeconds(value, out.seconds);
  } else {
    return "unknown option " + name;
  }
  return std::nullopt;
}

/// Options without a value.
bool setFlag(const std::string& word, CommandLine& out) {
  if (word == "--lines") {
    out.lines = true;
  } else if (word == "--help" || word == "-h") {
    out.help = true;
  } else {
    return false;
  }
  return true;
}

}  // namespace

std::expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& words) {
  CommandLine out;
  bool optionsEnded = false;
  for (std::size_t at = 0; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (optionsEnded || !word.starts_with('-') || word == "-") {
      (out.subject.empty() ? out.subject : out.parameters.emplace_back()) = word;
    } else if (word == "--") {
      optionsEnded = true;
    } else if (!setFlag(word, out)) {
      const std::size_t equals = word.find('=');
      const bool joined = equals != std::string::npos;
      if (!joined && at + 1 == words.size()) return std::unexpected(word + " needs a value");
      const std::string value = joined ? word.substr(equals + 1) : words[++at];
      if (Failure failure = setOption(word.substr(0, equals), value, out)) return std::unexpected(*failure);
    }
  }
  return out;
}

}  // namespace varnel::inspect
