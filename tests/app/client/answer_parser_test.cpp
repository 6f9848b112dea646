// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/client/answer_parser.h"

#include <gtest/gtest.h>

#include <string>

namespace varnel::client {
namespace {

using State = AnswerParser::State;

struct Outcome {
  State state = State::NeedsMore;
  int status = 0;
  std::string body = {};
  bool operator==(const Outcome&) const = default;
};

/// What becomes of an answer that arrives in pieces of `step` bytes, and whether the connection then ends.
Outcome read(std::string_view wire, std::size_t step, std::int64_t limit = 1000) {
  AnswerParser parser(limit);
  State state = State::NeedsMore;
  for (std::size_t at = 0; at < wire.size() && state == State::NeedsMore; at += step) {
    state = parser.put(wire.substr(at, step));
  }
  if (state == State::NeedsMore) state = parser.putEnd();
  if (state != State::Done) return {state};
  Answer answer = parser.take();
  return {state, answer.status, std::move(answer.body).text().value_or("cannot be unpacked")};
}

TEST(AnswerParser, TheSameInOnePieceAndByteByByte) {
  const std::string manyHeaders = [] {
    std::string text;
    for (int i = 0; i < 4000; ++i) text += "X-H: 0123456789abcdef\r\n";
    return text;
  }();
  const struct {
    const char* what;
    std::string wire;
    Outcome expected;
  } cases[] = {
      {"with a length", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}", {State::Done, 200, "{}"}},
      {"no body", "HTTP/1.1 404 \r\nContent-Length: 0\r\n\r\n", {State::Done, 404, ""}},
      {"no body by its status", "HTTP/1.1 204 No Content\r\n\r\n", {State::Done, 204, ""}},
      {"to the end", "HTTP/1.0 200 OK\r\n\r\n{}", {State::Done, 200, "{}"}},
      {"chunked",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1;x=y\r\n{\r\n1\r\n}\r\n0\r\nT: t\r\n\r\n",
       {State::Done, 200, "{}"}},
      {"after interim answers",
       "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Hints\r\nA: b\r\n\r\nHTTP/1.1 200 OK\r\n"
       "Content-Length: 1\r\n\r\n1",
       {State::Done, 200, "1"}},
      {"nothing at all", "", {State::CutOff}},
      {"half a head", "HTTP/1.1 200 OK\r\nContent-Le", {State::CutOff}},
      {"half a body", "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n{}", {State::CutOff}},
      {"half of the chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n", {State::CutOff}},
      {"only an interim answer", "HTTP/1.1 100 Continue\r\n\r\n", {State::CutOff}},
      {"another protocol", "SSH-2.0-OpenSSH_9.2\r\n\r\n", {State::Invalid}},
      {"a length that is no number", "HTTP/1.1 200 OK\r\nContent-Length: 2x\r\n\r\n{}", {State::Invalid}},
      {"two lengths", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 3\r\n\r\n{}", {State::Invalid}},
      {"a chunk size that is no number",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nz\r\n",
       {State::Invalid}},
      {"a head without an end", "HTTP/1.1 200 OK\r\n" + manyHeaders, {State::Invalid}},
      {"announced too large", "HTTP/1.1 200 OK\r\nContent-Length: 1001\r\n\r\n", {State::TooLarge}},
      {"grown too large", "HTTP/1.1 200 OK\r\n\r\n" + std::string(1001, ' '), {State::TooLarge}},
      {"just not too large",
       "HTTP/1.1 200 OK\r\n\r\n" + std::string(1000, ' '),
       {State::Done, 200, std::string(1000, ' ')}},
  };
  for (const auto& [what, wire, expected] : cases) {
    SCOPED_TRACE(what);
    for (const std::size_t step : {std::size_t{1}, std::size_t{7}, wire.size() + 1}) {
      const Outcome outcome = read(wire, step);
      EXPECT_EQ(static_cast<int>(outcome.state), static_cast<int>(expected.state)) << step;
      EXPECT_EQ(outcome, expected) << outcome.status << " " << outcome.body;
    }
  }
}

TEST(AnswerParser, TinyChunksStayCompact) {
  std::string wire = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
  for (int i = 0; i < 200'000; ++i) wire += "1\r\nx\r\n";
  wire += "0\r\n\r\n";
  EXPECT_EQ(read(wire, 4096, 1 << 20).body, std::string(200'000, 'x'));
}

}  // namespace
}  // namespace varnel::client
