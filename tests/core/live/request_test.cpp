// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/request.h"

#include <gtest/gtest.h>

#include "core/live/operations.h"

namespace varnel::live {
namespace {

std::optional<wire::PairingCredentials> paired(std::string_view baseURL, std::string token = "t0k") {
  return wire::PairingCredentials{.baseURL = *base::Url::parse(baseURL), .deviceId = "d", .token = std::move(token)};
}

std::string urlOf(const Call& call, std::string_view baseURL = "http://h:1") {
  const auto request = buildRequest(call, paired(baseURL), "KEY");
  return request ? request->url : "refused";
}

TEST(BuildRequest, SetsTheHeadersInOrder) {
  EXPECT_EQ(buildRequest(operations::sessions(), paired("http://h:1"), "KEY"),
            (HttpRequest{.method = "GET",
                         .url = "http://h:1/v1/sessions",
                         .headers = {{"Accept", "application/json"}, {"Authorization", "Bearer t0k"}},
                         .body = std::nullopt}));
  EXPECT_EQ(buildRequest(operations::rename("s", "né"), paired("http://h:1"), "KEY"),
            (HttpRequest{.method = "POST",
                         .url = "http://h:1/v1/sessions/s/name",
                         .headers = {{"Accept", "application/json"},
                                     {"Authorization", "Bearer t0k"},
                                     {"Idempotency-Key", "KEY"},
                                     {"Content-Type", "application/json"}},
                         .body = R"({"name":"né"})"}));
  // A claim goes to the scanned address and carries a key, like every POST, but no token.
  EXPECT_EQ(
      buildRequest(operations::claim(*base::Url::parse("https://new/p"), "s", "Léa"), paired("http://h:1"), "KEY"),
      (HttpRequest{
          .method = "POST",
          .url = "https://new/p/v1/pair/claim",
          .headers = {{"Accept", "application/json"}, {"Idempotency-Key", "KEY"}, {"Content-Type", "application/json"}},
          .body = R"({"secret":"s","deviceName":"Léa"})"}));
  Call forced = operations::models();
  forced.idempotent = true;
  EXPECT_EQ(buildRequest(forced, paired("http://h"), "K")->headers.back(), (Header{"Idempotency-Key", "K"}));
}

TEST(BuildRequest, JoinsBaseAddressPathAndQueryToTheLastCharacter) {
  struct Case {
    std::string base, path, url;
  };
  const std::vector<Case> cases = {
      {"http://h:1", "/v1/x", "http://h:1/v1/x"},
      {"http://h:1/", "/v1/x", "http://h:1/v1/x"},
      {"https://h/a/b", "/v1/x", "https://h/a/b/v1/x"},
      {"https://h/a/b/", "/v1/x?q=%20+%2B/?:@", "https://h/a/b/v1/x?q=%20+%2B/?:@"},
      {"http://h/a%20b", "/v1/x", "http://h/a%20b/v1/x"},
      {"http://h/é?ö=1", "/v1/x", "http://h/%C3%A9/v1/x?%C3%B6=1"},
      {"http://h?old=1", "/v1/x", "http://h/v1/x?old=1"},
      {"http://h?old=1", "/v1/x?new=2", "http://h/v1/x?new=2"},
      {"http://h", "/v1/x?", "http://h/v1/x?"},
      {"http://h", "/v1/x?a?b=%3F", "http://h/v1/x?a?b=%3F"},
      {"http://[::1]:80", "/v1/x", "http://[::1]:80/v1/x"},
      {"http://h", "/v1/a b#c/é%41%zz", "http://h/v1/a%20b%23c/%C3%A9%41%25zz"},
      {"http://h", "/v1/x?a b", "refused"},
      {"http://h", "/v1/x?a%2", "refused"},
      {"http://h", "/v1/../x", "refused"},
      {"http://h", "/v1/%2E%2e/x", "refused"},
      {"h:8080", "/v1/x", "refused"},
      {"/relative", "/v1/x", "refused"},
      {"http:///p", "/v1/x", "refused"},
  };
  for (const Case& c : cases) EXPECT_EQ(urlOf({.method = "GET", .path = c.path}, c.base), c.url) << c.base << c.path;
}

TEST(BuildRequest, EncodesIdsQueriesAndCursors) {
  using namespace operations;
  EXPECT_EQ(urlOf(session("a?b/c d%")), "http://h:1/v1/sessions/a%3Fb/c%20d%25");
  EXPECT_EQ(urlOf(resolve("r?1#", {})), "http://h:1/v1/requests/r%3F1%23/resolve");
  EXPECT_EQ(urlOf(usage(std::nullopt)), "http://h:1/v1/usage");
  EXPECT_EQ(urlOf(usage("a b")), "http://h:1/v1/usage?sessionId=a%20b");
  EXPECT_EQ(urlOf(archivedSessions(std::nullopt)), "http://h:1/v1/sessions/archived");
  EXPECT_EQ(urlOf(archivedSessions("a/b?c=")), "http://h:1/v1/sessions/archived?cursor=a/b?c=");
  EXPECT_EQ(urlOf(search("", std::nullopt)), "http://h:1/v1/search?q=");
  EXPECT_EQ(urlOf(search("a&b=c +é", "x=&y")), "http://h:1/v1/search?q=a%26b%3Dc%20%2B%C3%A9&cursor=x%3D%26y");
  EXPECT_EQ(urlOf(archive("s", true)), "http://h:1/v1/sessions/s/unarchive");
  EXPECT_EQ(urlOf(session("..")), "refused");
}

TEST(BuildRequest, WritesEveryBody) {
  using namespace operations;
  const auto body = [](const Call& call) { return **call.body; };
  const wire::ConversationPreferences preferences{.model = "m", .reasoningEffort = "high"};
  EXPECT_EQ(
      body(sendMessage("s", "hi", preferences, {})),
      R"({"text":"hi","mode":"default","model":"m","reasoningEffort":"high","serviceTier":"default","attachments":[]})");
  auto planned = preferences;
  planned.mode = wire::CodexCollaborationMode::Plan;
  planned.serviceTier = "fast";
  const wire::UploadedAttachment photo{.id = "u", .kind = "image", .name = "p.png", .mimeType = "image/png", .size = 3};
  EXPECT_EQ(body(startGoal("s", "win", planned, {photo})),
            R"({"objective":"win","mode":"plan","model":"m","reasoningEffort":"high","serviceTier":"fast",)"
            R"("attachments":[{"id":"u","kind":"image","name":"p.png","mimeType":"image/png","size":3}]})");
  EXPECT_EQ(body(updateSettings("s", preferences)),
            R"({"mode":"default","model":"m","reasoningEffort":"high","serviceTier":"default"})");
  EXPECT_EQ(body(createSession(
                {.cwd = "/w", .mode = "default", .sandbox = "read-only", .approvalPolicy = "never", .prompt = "p"})),
            R"({"cwd":"/w","mode":"default","sandbox":"read-only","approvalPolicy":"never",)"
            R"("acknowledgeHighRisk":false,"prompt":"p"})");
  EXPECT_EQ(body(interrupt("s")), "{}");
  EXPECT_EQ(body(archive("s", false)), "{}");
  EXPECT_EQ(body(resolve("r", json::JSONValue::Object{{"decision", "accept"}})), R"({"result":{"decision":"accept"}})");
  EXPECT_EQ(body(track("s", true, std::nullopt)), R"({"sessionId":"s","pin":true})");
  EXPECT_EQ(body(track(std::nullopt, false, "clear")), R"({"pin":false,"action":"clear"})");
}

TEST(BuildRequest, SendsNothingThatItCannotSay) {
  const auto kind = [](const auto& result) { return result.error().kind; };
  using enum RequestError::Kind;
  EXPECT_EQ(kind(buildRequest(operations::sessions(), std::nullopt, "K")), NotPaired);
  EXPECT_EQ(kind(buildRequest(operations::rename("s", "\xff"), paired("http://h"), "K")), InvalidBody);
  EXPECT_EQ(kind(buildRequest(operations::sessions(), paired("http://h", "a\r\nX: y"), "K")), InvalidHeader);
  const auto token = buildRequest(operations::sessions(), paired("http://h", "s3cret\n"), "K");
  EXPECT_EQ(token.error().detail.find("s3cret"), std::string::npos);
}

TEST(BuildUpload, KeepsHeadersInOrderAndNamesWhole) {
  const auto upload = [](std::string_view name) {
    return buildUpload("s 1", "image/png", name, paired("http://h/p"), "KEY");
  };
  EXPECT_EQ(upload("my photo.png"), (HttpRequest{.method = "POST",
                                                 .url = "http://h/p/v1/sessions/s%201/uploads",
                                                 .headers = {{"Authorization", "Bearer t0k"},
                                                             {"Idempotency-Key", "KEY"},
                                                             {"Content-Type", "image/png"},
                                                             {"X-File-Name", "my photo.png"}},
                                                 .body = std::nullopt}));
  for (const std::string name :
       {"my photo.png", "naïve.png", "a\r\nX-Evil: 1", "UTF-8''x", " edge ", "", "100%.txt", "日本.png"}) {
    const std::string header = upload(name)->headers.back().value;
    EXPECT_EQ(header.find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(fileNameFromHeader(header), name);
  }
  EXPECT_EQ(upload("naïve.png")->headers.back().value, "UTF-8''na%C3%AFve.png");
  EXPECT_EQ(buildUpload("s", "a/b\n", "n", paired("http://h"), "K").error().kind, RequestError::Kind::InvalidHeader);
  EXPECT_EQ(buildUpload("s", "a/b", "n", std::nullopt, "K").error().kind, RequestError::Kind::NotPaired);
}

TEST(BuildStreamAddress, ReplacesSchemeAndQuery) {
  const auto address = [](std::string_view base, std::string token = "t+k/n =&é") {
    return buildStreamAddress(7, paired(base, std::move(token))).value_or("refused");
  };
  EXPECT_EQ(address("https://h:8/p/"), "wss://h:8/p/v1/events?after=7&access_token=t%2Bk%2Fn%20%3D%26%C3%A9");
  EXPECT_EQ(address("http://h?x=1", "t"), "ws://h/v1/events?after=7&access_token=t");
  EXPECT_EQ(address("HTTPS://h", "t"), "ws://h/v1/events?after=7&access_token=t");
  EXPECT_EQ(address("//h", "t"), "ws://h/v1/events?after=7&access_token=t");
  EXPECT_EQ(address("h:1", "t"), "refused");
  EXPECT_EQ(buildStreamAddress(0, std::nullopt).error().kind, RequestError::Kind::NotPaired);
}

}  // namespace
}  // namespace varnel::live
