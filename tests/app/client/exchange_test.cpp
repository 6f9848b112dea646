// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <zlib.h>

#include "tests/app/client/client_fixture.h"

/// What the pipeline makes of each kind of answer, for the two ways a request travels: a GET and a POST.
namespace varnel::client {
namespace {

constexpr const char* kSessions = "/v1/sessions";
constexpr const char* kArchive = "/v1/sessions/s/archive";
constexpr const char* kUpload = "/v1/sessions/s/uploads";

class Exchange : public PairedClient {
 protected:
  /// The failure of a GET and of a POST that a script answers. `Cancelled` stands for no failure.
  std::vector<ClientError> failuresOf(APIClient& using_, const Script& script) {
    bridge.always("GET", kSessions, script);
    bridge.always("POST", kArchive, script);
    const auto get = await(using_.sessions());
    const auto post = await(using_.archive("s", false));
    EXPECT_FALSE(get);
    EXPECT_FALSE(post);
    return {get ? ClientError(Cancelled{}) : get.error(), post ? ClientError(Cancelled{}) : post.error()};
  }
};

const auto isServer = [](int status, const std::string& message) {
  return testing::Each(testing::Eq(ClientError(APIError{APIError::Kind::Server, status, message})));
};

TransportError::Kind kindOf(const ClientError& error) {
  const auto* transport = std::get_if<TransportError>(&error);
  EXPECT_NE(transport, nullptr) << userText(error);
  return transport ? transport->kind : TransportError::Kind::Failed;
}

TEST_F(Exchange, StatusesThatAreNotASuccess) {
  const struct {
    Script script;
    int status;
    const char* message;
  } cases[] = {
      {Script::json(404, R"({"error":"No such conversation."})"), 404, "No such conversation."},
      {Script::json(500, "<html>boom</html>"), 500, "Bridge error"},
      {Script::json(401, R"({"error":"Unknown token."})"), 401, "Unknown token."},
      {Script::json(407, R"({"error":"proxy"})"), 407, "proxy"},
      {Script::json(409, ""), 409, "Bridge error"},
      {Script::json(422, R"({"error":7})"), 422, "Bridge error"},
      {Script::json(304, ""), 304, "Bridge error"},
      {Script::json(300, ""), 300, "Bridge error"},
      {Script::json(599, R"({"error":"é ü","more":1})"), 599, "é ü"},
  };
  for (const auto& [script, status, message] : cases) {
    SCOPED_TRACE(status);
    EXPECT_THAT(failuresOf(client, script), isServer(status, message));
  }
}

TEST_F(Exchange, AnUploadHasAMessageOfItsOwn) {
  for (const auto& [body, message] : {std::pair{R"({"error":"Too large."})", "Too large."}, {"", "Upload failed"}}) {
    bridge.expect("POST", kUpload, Script::json(413, body));
    const auto result = await(client.upload("s", "x", "text/plain", "a.txt"));
    EXPECT_EQ(errorOf(result), ClientError(APIError{APIError::Kind::Server, 413, message}));
  }
}

TEST_F(Exchange, ASuccessMustBeTheRecord) {
  for (const Script& script : {Script::raw("HTTP/1.1 204 No Content\r\n\r\n", Script::Then::KeepOpen),
                               Script::json(200, ""), Script::json(201, "{"), Script::json(200, "nul")}) {
    for (const ClientError& error : failuresOf(client, script)) {
      EXPECT_TRUE(std::holds_alternative<json::DecodeError>(error)) << userText(error);
    }
  }
  bridge.expect("GET", kSessions, Script::json(200, R"({"sessions":[{"id":7}]})"));
  EXPECT_EQ(userText(errorOf(await(client.sessions()))).substr(0, 14), "sessions[0].id");
  bridge.expect("POST", kArchive, Script::json(299, "null"));
  EXPECT_TRUE(await(client.archive("s", false))) << "any JSON will do where the answer is dropped";
}

std::string packed(const std::string& text) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
  std::string input = text;
  std::string out(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(input.data());
  stream.avail_in = static_cast<uInt>(input.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

Script packedAnswer(int status, const std::string& bytes, const std::string& name = "gzip") {
  Script script = Script::json(status, bytes);
  script.bytes.insert(script.bytes.find("\r\n") + 2, "Content-Encoding: " + name + "\r\n");
  return script;
}

TEST_F(Exchange, APackedAnswerIsTheSameAnswer) {
  const std::string project = R"({"path":"/p","name":"n","highRisk":false})";
  std::string many = project;
  for (int i = 1; i < 40'000; ++i) many += "," + project;
  const auto list = [](const std::string& projects) { return R"({"projects":[)" + projects + "]}"; };
  for (const auto& [text, count] : {std::pair(list(project), 1U), std::pair(list(many), 40'000U)}) {
    bridge.expect("GET", "/v1/projects", packedAnswer(200, packed(text), count == 1 ? "GZip" : "x-gzip"));
    const auto projects = await(client.projects());
    ASSERT_TRUE(projects) << userText(projects.error());
    EXPECT_EQ(projects->size(), count);
  }
  // Two members one after the other are one text.
  const auto half = list(project).size() / 2;
  bridge.expect("GET", "/v1/projects",
                packedAnswer(200, packed(list(project).substr(0, half)) + packed(list(project).substr(half))));
  EXPECT_TRUE(await(client.projects()));
  EXPECT_EQ(bridge.requests().back().header("Accept-Encoding"), "gzip");
  EXPECT_THAT(failuresOf(client, packedAnswer(409, packed(R"({"error":"busy"})"))), isServer(409, "busy"));
  EXPECT_THAT(failuresOf(client, packedAnswer(500, "torn")), isServer(500, "Bridge error"));
}

TEST_F(Exchange, APackedAnswerThatIsNoneOrTooMuch) {
  const auto whole = packed(R"({"sessions":[]})");
  for (const auto& bytes :
       {std::string(R"({"sessions":[]})"), whole.substr(0, whole.size() - 1), whole + "x", std::string()}) {
    EXPECT_THAT(failuresOf(client, packedAnswer(200, bytes)),
                testing::Each(ClientError(APIError{APIError::Kind::InvalidResponse, 0, {}})));
  }
  APIClient narrow = limited({.answerLimit = 1000});
  const auto bomb = packed(R"({"sessions":[]})" + std::string(100'000, ' '));
  ASSERT_LT(bomb.size(), 1000U);
  for (const auto& error : failuresOf(narrow, packedAnswer(200, bomb))) {
    EXPECT_EQ(kindOf(error), TransportError::Kind::TooLarge);
  }
  bridge.always("GET", kSessions, packedAnswer(200, packed(R"({"sessions":[]})" + std::string(985, ' '))));
  EXPECT_TRUE(await(narrow.sessions())) << "as much as there may be";
}

TEST_F(Exchange, WhatIsNotHTTPIsAnInvalidResponse) {
  for (const ClientError& error : failuresOf(client, Script::raw("SSH-2.0-OpenSSH_9.2\r\n\r\n"))) {
    EXPECT_EQ(userText(error), "The bridge returned an invalid response.");
  }
}

TEST_F(Exchange, BrokenConnectionsAreTransportFailures) {
  const std::string body = R"({"sessions":[]})";
  for (const Script& script :
       {Script::drop(), Script::drop(Script::Then::Reset), Script::raw("HTTP/1.1 200 O"),
        Script::shortBody(body, 5, Script::Then::Close), Script::shortBody(body, 5, Script::Then::Reset)}) {
    for (const ClientError& error : failuresOf(client, script)) {
      EXPECT_EQ(kindOf(error), TransportError::Kind::Failed);
      EXPECT_FALSE(userText(error).empty());
      EXPECT_EQ(userText(error).find(kToken), std::string::npos);
    }
  }
}

TEST_F(Exchange, AnswersWithoutALengthOrInChunks) {
  const std::string envelope = R"({"sessions":[]})";
  for (const char* head : {"HTTP/1.1 200 OK\r\n\r\n", "HTTP/1.0 200 OK\r\n\r\n"}) {
    bridge.expect("GET", kSessions, Script::raw(head + envelope));
    EXPECT_TRUE(await(client.sessions()));
    bridge.expect("POST", kArchive, Script::raw(std::string(head) + "{}"));
    EXPECT_TRUE(await(client.archive("s", false)));
  }
  const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\n{\r\n1\r\n}\r\n0\r\n\r\n";
  bridge.expect("POST", kArchive, Script::raw(chunked, Script::Then::KeepOpen));
  EXPECT_TRUE(await(client.archive("s", false)));
  bridge.expect("POST", kArchive, Script::raw("HTTP/1.1 100 Continue\r\n\r\n" + chunked));
  EXPECT_TRUE(await(client.archive("s", false))) << "an interim answer is not the answer";
  bridge.expect("POST", kArchive, Script::raw(chunked.substr(0, chunked.size() - 5)));
  EXPECT_FALSE(await(client.archive("s", false))) << "the last chunk is missing";
}

TEST_F(Exchange, SilenceTimesOut) {
  APIClient hasty = limited({.timeout = 150ms});
  for (const Script& script : {Script::silence(), Script::raw("HTTP/1.1 200 OK\r\n", Script::Then::KeepOpen),
                               Script::shortBody("[1,2,3]", 3, Script::Then::KeepOpen)}) {
    for (const ClientError& error : failuresOf(hasty, script)) {
      EXPECT_EQ(kindOf(error), TransportError::Kind::TimedOut);
      EXPECT_EQ(userText(error), "The request timed out.");
    }
  }
}

TEST_F(Exchange, AnAnswerThatTricklesDoesNotTimeOut) {
  APIClient hasty = limited({.timeout = 200ms});
  bridge.expect("GET", kSessions, Script::shortBody(R"({"sessions":[]})", 0, Script::Then::KeepOpen));
  auto task = hasty.sessions();
  ASSERT_TRUE(spinUntil([&] { return bridge.count("GET", kSessions) == 1; }));
  const std::string body = R"({"sessions":[]})";
  for (std::size_t at = 0; at < body.size(); at += 3) {
    support::spinFor(80ms);
    bridge.sendTo(1, body.substr(at, 3));
  }
  EXPECT_TRUE(await(std::move(task)));
}

TEST_F(Exchange, AnAnswerBeyondTheLimitIsCut) {
  APIClient small = limited({.answerLimit = 1 << 20});
  const std::string body = "[\"" + std::string(3 << 20, 'x') + "\"]";
  const Script endless = Script::raw("HTTP/1.1 200 OK\r\n\r\n" + body, Script::Then::KeepOpen);
  for (const Script& script : {Script::json(200, body), endless, Script::json(500, body)}) {
    for (const ClientError& error : failuresOf(small, script)) {
      EXPECT_EQ(kindOf(error), TransportError::Kind::TooLarge);
      EXPECT_EQ(userText(error), "The answer of the bridge is larger than 1 MiB.");
    }
  }
}

TEST_F(Exchange, NoRedirectIsFollowed) {
  FakeBridge elsewhere;
  for (const int status : {301, 302, 303, 307, 308}) {
    SCOPED_TRACE(status);
    EXPECT_THAT(failuresOf(client, Script::redirect(status, elsewhere.baseURL() + "/v1/sessions")),
                isServer(status, "Bridge error"));
  }
  EXPECT_EQ(elsewhere.connections(), 0);
}

TEST_F(Exchange, NothingListens) {
  std::string address;
  {
    FakeBridge gone;
    address = gone.baseURL();
  }
  APIClient lost(credentialsFor(address));
  EXPECT_EQ(kindOf(errorOf(await(lost.sessions()))), TransportError::Kind::Failed);
  EXPECT_EQ(kindOf(errorOf(await(lost.archive("s", false)))), TransportError::Kind::Failed);
  for (const char* odd : {"ftp://127.0.0.1/", "file://localhost/etc"}) {
    APIClient wrong(credentialsFor(odd));
    EXPECT_TRUE(failure<live::RequestError>(await(wrong.sessions()))) << odd;
    EXPECT_TRUE(failure<live::RequestError>(await(wrong.archive("s", false)))) << odd;
  }
}

TEST_F(Exchange, AServerMayAnswerBeforeTheUploadIsWhole) {
  Script early = Script::json(413, R"({"error":"Too large."})");
  early.early = true;
  bridge.expect("POST", kUpload, early);
  const auto result = await(client.upload("s", QByteArray(8'000'000, 'x'), "video/mp4", "a.mp4"));
  EXPECT_EQ(errorOf(result), ClientError(APIError{APIError::Kind::Server, 413, "Too large."}));
}

}  // namespace
}  // namespace varnel::client
