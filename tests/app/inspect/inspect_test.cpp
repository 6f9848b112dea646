// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

#include "tests/support/fake_bridge.h"
#include "tests/support/waiting.h"

/// The tool as a script meets it: its streams and its exit status.
namespace varnel::inspect {
namespace {

using support::FakeBridge;
using support::Script;
using testing::HasSubstr;

struct Ran {
  int status = -1;
  std::string out;
  std::string error;
};

Ran run(const QStringList& words, const QByteArray& input = {}) {
  QProcess process;
  process.start(qEnvironmentVariable("VARNEL_INSPECT"), words);
  process.write(input);
  process.closeWriteChannel();
  if (!support::spinUntil([&] { return process.state() == QProcess::NotRunning; }, std::chrono::seconds(20))) {
    process.kill();
    process.waitForFinished();
    return {};
  }
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

TEST(Decode, GivesTheRecordAgain) {
  const Ran ran =
      run({"decode", "ServiceTierOption"}, "{\"id\":\"i\",\"more\":[1],\"description\":\"d\",\"name\":\"n\"}\n");
  EXPECT_EQ(ran.status, 0) << ran.error;
  EXPECT_EQ(ran.out, "{\"id\":\"i\",\"name\":\"n\",\"description\":\"d\"}\n");
  EXPECT_EQ(run({"decode", "UploadedAttachment"}, R"({"id":"i","kind":"k","name":"n","mimeType":"m","size":1e2})").out,
            "{\"id\":\"i\",\"kind\":\"k\",\"name\":\"n\",\"mimeType\":\"m\",\"size\":100}\n");
}

TEST(Decode, SaysWhereAndWhyNot) {
  const Ran ran = run({"decode", "ProjectsEnvelope"}, R"({"projects":[{"path":"p","name":null,"highRisk":true}]})");
  EXPECT_EQ(ran.status, 1);
  EXPECT_EQ(ran.out, "");
  EXPECT_THAT(ran.error, testing::StartsWith("projects[0].name: "));
}

TEST(Lines, EachLineHasItsOwnVerdict) {
  const Ran ran = run({"--lines", "decode", "ServerError"}, "{\"error\":\"a\"}\n{}\n\nnot json\n{\"error\":\"z\"}");
  EXPECT_EQ(ran.status, 0);
  const QStringList lines = QString::fromStdString(ran.out).split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 5) << ran.out;
  EXPECT_EQ(lines[0], R"({"ok":{"error":"a"}})");
  for (int i = 1; i <= 3; ++i) EXPECT_TRUE(lines[i].startsWith(R"({"error":")")) << lines[i].toStdString();
  EXPECT_EQ(lines[4], R"({"ok":{"error":"z"}})");
}

TEST(Pretty, IsAStringThatHoldsIt) {
  EXPECT_EQ(run({"pretty"}, R"({"b":1,"a":"x/y"})").out,
            "\"{\\n  \\\"a\\\": \\\"x\\\\/y\\\",\\n  \\\"b\\\": 1\\n}\"\n");
  EXPECT_EQ(run({"pretty", "--lines"}, "null\n").out, "{\"ok\":\"null\"}\n");
}

TEST(Markdown, IsShownAsBlocksAndRuns) {
  EXPECT_EQ(run({"blocks"}, "a\nb\n## c\n- d\n 1. e\n```x\n").out,
            "[{\"kind\":\"paragraph\",\"text\":\"a\\nb\"},{\"kind\":\"heading\",\"level\":2,\"text\":\"c\"},"
            "{\"kind\":\"unorderedList\",\"items\":[{\"text\":\"d\",\"indent\":0}]},"
            "{\"kind\":\"orderedList\",\"items\":[{\"text\":\"e\",\"indent\":0,\"number\":1}]},"
            "{\"kind\":\"code\",\"language\":\"x\",\"text\":\"\"}]\n");
  EXPECT_EQ(run({"--lines", "blocks"}, "\"~~~\\n\\n~~~\\n> a\\n---\\na|b\\n---|---\\n|c\"\n\"\"\n7\n").out,
            "{\"ok\":[{\"kind\":\"code\",\"text\":\"\"},{\"kind\":\"quote\",\"text\":\"a\"},{\"kind\":\"rule\"},"
            "{\"kind\":\"table\",\"header\":[\"a\",\"b\"],\"rows\":[[\"c\"]]}]}\n{\"ok\":[]}\n"
            "{\"error\":\"expected a string\"}\n");
  EXPECT_EQ(run({"inline"}, "***~~a~~*** [`b`](c)").out,
            "[{\"text\":\"a\",\"styles\":[\"emphasis\",\"strong\",\"strikethrough\"]},{\"text\":\" \",\"styles\":[]},"
            "{\"text\":\"b\",\"styles\":[\"code\"],\"link\":\"c\"}]\n");
  EXPECT_EQ(run({"inline"}).out, "[]\n");
  const Ran refused = run({"inline"}, "a\xff");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.error, HasSubstr("not UTF-8"));
}

TEST(Card, ShowsWhatIsOfferedAndSentBack) {
  const auto input = [](const std::string& method, const std::string& rest) {
    return QByteArray::fromStdString(R"({"request":{"id":"r","method":")" + method +
                                     R"(","sessionId":"s","createdAt":1,)" +
                                     R"("params":{"questions":[{"id":"q"}]},"resolved":false,)" + rest);
  };
  EXPECT_EQ(run({"card"}, input("x", R"("availableDecisions":["accept","acceptForSession","decline"]},)"
                                     R"("decision":"acceptForSession"})"))
                .out,
            R"({"kind":"approval","options":["accept","acceptForSession","decline"],)"
            R"("picker":["Approve once","Approve for session"],"result":{"decision":"acceptForSession"}})"
            "\n");
  EXPECT_EQ(run({"card"}, input("requestUserInput", R"("availableDecisions":[]},"answer":"yes"})")).out,
            R"({"kind":"question","options":["accept","decline"],"picker":[],)"
            R"("result":{"answers":{"q":{"answers":["yes"]}}}})"
            "\n");
  EXPECT_THAT(run({"card"}, "{}").error, HasSubstr("request: missing"));
}

TEST(Transcript, IsShownAsRowsAndItsFirstUnreadReply) {
  const std::string items = R"([{"id":"U","type":"t","timestamp":1,"role":"user"},{"id":"T","type":"t","timestamp":2},)"
                            R"({"id":"A","type":"t","timestamp":3,"role":"assistant"}])";
  const auto unread = [&](const std::string& rest) {
    return run({"unread"}, QByteArray::fromStdString("{\"items\":" + items + rest + "}")).out;
  };
  EXPECT_EQ(run({"rows"}, QByteArray::fromStdString(items)).out,
            "[{\"id\":\"U\",\"kind\":\"message\",\"items\":[\"U\"]},{\"id\":\"tools-T\",\"kind\":\"tools\",\"items\":["
            "\"T\"]},"
            "{\"id\":\"A\",\"kind\":\"message\",\"items\":[\"A\"]}]\n");
  EXPECT_EQ(unread(R"(,"after":"U")"), "\"A\"\n");
  EXPECT_EQ(unread(R"(,"after":null)"), "null\n");
  EXPECT_EQ(unread(R"(,"after":"A")"), "null\n");
  EXPECT_EQ(unread(R"(,"knownItemIDs":[])"), "\"A\"\n");
  EXPECT_EQ(unread(R"(,"knownItemIDs":["A"])"), "null\n");
  EXPECT_EQ(run({"rows"}, "[{}]").status, 1);
}

TEST(Models, AreWhatTheApplicationReadsOfThem) {
  EXPECT_EQ(run({"models"}, R"({"data":[{"id":"m"},7,{"id":"n","supportedReasoningEfforts":["low"]}]})").out,
            R"([{"id":"m","displayName":"m","efforts":[],"isDefault":false,"serviceTiers":[]},)"
            R"({"id":"n","displayName":"n","efforts":["low"],"isDefault":false,"serviceTiers":[]}])"
            "\n");
  EXPECT_EQ(run({"models"}, "7").out, "[]\n");
  EXPECT_EQ(run({"models"}, "{").status, 1);
}

TEST(Reconcile, GivesTheIdsOfBothLists) {
  const std::string item = R"({"id":"%","type":"t","timestamp":1,"role":"user","text":"x"})";
  const auto called = [&](const char* id) { return std::string(item).replace(item.find('%'), 1, id); };
  const auto question =
      R"({"serverItems":[)" + called("a") + R"(],"optimisticItems":[)" + called("b") + "," + called("c") + "]}";
  EXPECT_EQ(run({"reconcile"}, QByteArray::fromStdString(question)).out,
            R"({"items":["a","c"],"remainingOptimistic":["c"]})"
            "\n");
  EXPECT_THAT(run({"reconcile"}, R"({"serverItems":[]})").error, HasSubstr("optimisticItems"));
}

TEST(Usage, IsShownWithStatusTwo) {
  const std::vector<QStringList> wrong = {
      {},
      {"nothing"},
      {"decode"},
      {"decode", "NoRecord"},
      {"pretty", "more"},
      {"--unknown", "pretty"},
      {"call"},
      {"call", "nothing"},
      {"call", "sessions"},
      {"call", "sessions", "--lines", "--base-url", "http://x", "--token", "t"},
      {"call", "sessions", "--base-url", "no url", "--token", "t"},
      {"call", "rename", R"({"sessionId":"s"})", "--base-url", "http://x", "--token", "t"},
      {"call", "rename", R"({"sessionId":"s","name":1})", "--base-url=http://x", "--token=t"},
      {"call", "sessions", R"({"more":1})", "--base-url", "http://x", "--token", "t"},
      {"reconcile", "more"},
      {"follow", "more", "--base-url", "http://x", "--token", "t"},
      {"follow", "--for", "-1", "--base-url", "http://x", "--token", "t"},
      {"follow"},
      {"events", "--after", "x", "--base-url", "http://x", "--token", "t"},
      {"events", "--count", "0", "--base-url", "http://x", "--token", "t"},
      {"call", "sessions", "--base-url", "http://x", "--token-file", "/nowhere/token"}};
  for (const QStringList& words : wrong) {
    const Ran ran = run(words);
    EXPECT_EQ(ran.status, 2) << words.join(u' ').toStdString() << ran.error;
    EXPECT_EQ(ran.out, "");
    EXPECT_THAT(ran.error, HasSubstr("usage: varnel-inspect"));
  }
  EXPECT_EQ(run({"--help"}).status, 0);
}

class Bridge : public testing::Test {
 protected:
  FakeBridge bridge;

  Ran call(const QStringList& words) {
    return run(QStringList{"call"} + words +
               QStringList{"--base-url", QString::fromStdString(bridge.baseURL()), "--token", "tok"});
  }
};

TEST_F(Bridge, OperationsGiveWhatTheyReturn) {
  bridge.expect("GET", "/v1/projects", Script::json(200, R"({"projects":[{"highRisk":false,"name":"n","path":"p"}]})"));
  EXPECT_EQ(call({"projects"}).out, "[{\"path\":\"p\",\"name\":\"n\",\"highRisk\":false}]\n");
  EXPECT_EQ(bridge.requests().back().header("Authorization"), "Bearer tok");
  bridge.expect("GET", "/v1/sessions/s", Script::json(200, R"({"items":[],"unknown":{"deep":[1.0]}})"));
  EXPECT_EQ(call({"session", R"({"sessionId":"s"})"}).out, "{\"items\":[],\"unknown\":{\"deep\":[1]}}\n");
  bridge.expect("POST", "/v1/sessions/s/name", Script::json(200, R"({"any":"thing"})"));
  EXPECT_EQ(call({"rename", R"({"sessionId":"s","name":"ü"})"}).out, "null\n");
  EXPECT_EQ(bridge.requests().back().body, R"({"name":"ü"})");
  bridge.expect("POST", "/v1/sessions", Script::json(200, R"({"threadId":"t\"1"})"));
  EXPECT_EQ(call({"createSession", R"({"cwd":"/p","sandbox":"s","approvalPolicy":"a","prompt":"go"})"}).out,
            "\"t\\\"1\"\n");
  bridge.expect("GET", "/v1/search?q=a%20b", Script::json(200, R"({"data":[]})"));
  EXPECT_EQ(call({"search", R"({"query":"a b"})"}).out, "{\"data\":[]}\n");
  bridge.expect("POST", "/v1/sessions/s/messages", Script::json(200, "{}"));
  EXPECT_EQ(call({"sendMessage", R"({"sessionId":"s","text":"t","preferences":{"mode":"plan","model":"m",)"
                                 R"("reasoningEffort":"e"}})"})
                .out,
            "null\n");
}

TEST_F(Bridge, UploadSendsTheFile) {
  const QTemporaryDir directory;
  QFile file(directory.filePath("a b.bin"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QByteArray("\0\1\xff", 3));
  file.close();
  bridge.expect("POST", "/v1/sessions/s/uploads",
                Script::json(200, R"({"id":"u","kind":"k","name":"n","mimeType":"m","size":3})"));
  const Ran ran = call({"upload", QStringLiteral(R"({"sessionId":"s","file":"%1"})").arg(file.fileName())});
  EXPECT_EQ(ran.status, 0) << ran.error;
  EXPECT_EQ(bridge.requests().back().body, std::string("\0\1\xff", 3));
  EXPECT_EQ(bridge.requests().back().header("X-File-Name"), "a b.bin");
}

TEST_F(Bridge, AClaimNeedsNoToken) {
  bridge.expect("POST", "/v1/pair/claim", Script::json(200, R"({"deviceId":"d","token":"t"})"));
  const Ran ran = run({"call", "claim",
                       QStringLiteral(R"({"baseURL":"%1","secret":"x","deviceName":"y"})")
                           .arg(QString::fromStdString(bridge.baseURL()))});
  EXPECT_EQ(ran.out, R"({"baseURL":")" + bridge.baseURL() + "\",\"deviceId\":\"d\",\"token\":\"t\"}\n");
  EXPECT_FALSE(bridge.requests().back().header("Authorization"));
}

TEST_F(Bridge, AFailureIsItsTextAlone) {
  bridge.expect("GET", "/v1/sessions", Script::json(401, R"({"error":"Unknown token."})"));
  const Ran ran = call({"sessions"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_EQ(ran.out, "");
  EXPECT_EQ(ran.error, "Unknown token.\n");
}

/// The lines without their times.
std::vector<std::string> changesIn(const Ran& ran) {
  std::vector<std::string> changes;
  for (const QString& line : QString::fromStdString(ran.out).split(u'\n', Qt::SkipEmptyParts)) {
    EXPECT_TRUE(line.startsWith(u"{\"at\":")) << line.toStdString();
    changes.push_back("{" + line.section(u',', 1).toStdString());
  }
  return changes;
}

TEST_F(Bridge, FollowingPrintsEachChangeAndPerformsCommands) {
  const std::string summary = R"({"id":"s","project":"p","active":true,"state":"done","latestCommentary":"",)"
                              R"("updatedAt":1,"pinned":false})";
  bridge.always("GET", "/v1/sessions", Script::json(200, R"({"sessions":[)" + summary + "]}"));
  bridge.always("GET", "/v1/projects", Script::json(200, R"({"projects":[]})"));
  bridge.always("GET", "/v1/models", Script::json(200, R"({"data":[{"id":"m"}]})"));
  bridge.always("GET", "/v1/usage", Script::json(500, "{}"));
  bridge.always("GET", "/v1/rate-limit", Script::json(200, R"({"rateLimit":{"usedPercent":4}})"));
  bridge.always("GET", "/v1/sessions/s",
                Script::json(200, R"({"items":[{"id":"i","type":"t","timestamp":1}],"pendingRequests":[]})"));
  bridge.always("GET", "/v1/events?after=0&access_token=tok",
                Script::acceptStream({R"({"sequence":7,"type":"x","timestamp":1,"payload":{}})"}));
  bridge.expect("POST", "/v1/sessions/s/interrupt", Script::json(200, "{}"));
  const QTemporaryDir directory;
  const QStringList words{"follow",
                          "--base-url",
                          QString::fromStdString(bridge.baseURL()),
                          "--token",
                          "tok",
                          "--open",
                          "s",
                          "--state-dir",
                          directory.path(),
                          "--device-id",
                          "varnel-inspect",
                          "--for",
                          "1"};
  const Ran ran = run(words,
                      "{\"call\":\"markRead\",\"args\":{\"sessionId\":\"s\",\"through\":\"i\"}}\n"
                      "{\"call\":\"lastReadItemID\",\"args\":{\"for\":\"s\"}}\n"
                      "{\"call\":\"rename\",\"args\":{\"sessionId\":\"none\",\"to\":\"x\"}}\n"
                      "{\"call\":\"interrupt\",\"args\":{\"sessionId\":\"s\"}}");
  EXPECT_EQ(ran.status, 0) << ran.error;
  EXPECT_THAT(
      changesIn(ran),
      testing::IsSupersetOf(
          {R"({"credentials":true})", R"({"selectedSessionId":"s"})", R"({"sessions":["s"]})", R"({"models":["m"]})",
           R"({"connected":true})", R"({"lastSequence":7})", R"({"rateLimit":{"usedPercent":4}})",
           R"({"transcript":{"s":["i"]}})", R"({"pendingRequests":{"s":[]}})",
           R"({"result":{"call":"markRead","value":null}})", R"({"result":{"call":"lastReadItemID","value":"i"}})",
           R"({"result":{"call":"rename","value":false}})", R"({"result":{"call":"interrupt","value":null}})"}));

  const Ran again = run(words.first(words.size() - 2), R"({"call":"lastReadItemID","args":{"sessionId":"s"}})");
  EXPECT_EQ(changesIn(again).back(), R"({"result":{"call":"lastReadItemID","value":"i"}})") << "ends with its input";
  const Ran refused = run(words.first(words.size() - 2), R"({"call":"dance"})");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.error, HasSubstr("dance"));
}

TEST_F(Bridge, EventsAreLines) {
  const auto event = [](int sequence) {
    return R"({"type":"t","sequence":)" + std::to_string(sequence) + R"(,"timestamp":1.5,"payload":{}})";
  };
  const auto words = [this](int after) {
    return QStringList{"events",  "--base-url",          QString::fromStdString(bridge.baseURL()), "--token", "tok",
                       "--after", QString::number(after)};
  };
  bridge.expect("GET", "/v1/events?after=4&access_token=tok", Script::acceptStream({event(5), event(6), event(7)}));
  const Ran two = run(words(4) + QStringList{"--count", "2"});
  EXPECT_EQ(two.status, 0) << two.error;
  EXPECT_EQ(two.out,
            "{\"sequence\":5,\"type\":\"t\",\"timestamp\":1.5,\"payload\":{}}\n"
            "{\"sequence\":6,\"type\":\"t\",\"timestamp\":1.5,\"payload\":{}}\n");
  bridge.expect("GET", "/v1/events?after=0&access_token=tok", Script::acceptStream({event(1), "{}"}));
  const Ran broken = run(words(0));
  EXPECT_EQ(broken.status, 1);
  EXPECT_THAT(broken.error, HasSubstr("sequence: "));
  EXPECT_EQ(std::ranges::count(broken.out, '\n'), 1);
  bridge.expect("GET", "/v1/events?after=1&access_token=tok", Script::json(401, "{}"));
  EXPECT_EQ(run(words(1)).error, "Bridge error\n");
}

}  // namespace
}  // namespace varnel::inspect
