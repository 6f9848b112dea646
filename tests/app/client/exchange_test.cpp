// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
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
