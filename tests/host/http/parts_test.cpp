// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <zlib.h>

#include "host/http/gate.h"
#include "host/http/gzip.h"
#include "host/http/routes.h"
#include "host/http/target.h"

namespace varnel::http {
namespace {

using boost::beast::http::verb;
using ::testing::ElementsAre;

TEST(Target, isDecodedAfterItIsSplit) {
  const auto target = parseTarget("/v1/sessions/a%2Fb%3Fc/name?q=a%26b%3D+%C3%A9&cursor=&flag");
  ASSERT_TRUE(target);
  EXPECT_THAT(target->segments, ElementsAre("v1", "sessions", "a/b?c", "name"));
  EXPECT_EQ(target->value("q"), "a&b=+é");
  EXPECT_EQ(target->value("cursor"), "");
  EXPECT_EQ(target->value("flag"), "");
  EXPECT_EQ(target->value("other"), std::nullopt);
  for (const auto* bad : {"", "v1", "http://x/v1", "/v1/%zz", "/v1/%", "/v1/%ff", "/v1?q=%ff", "*"}) {
    EXPECT_FALSE(parseTarget(bad)) << bad;
  }
}

TEST(Routes, tellAMissingPathFromAWrongVerb) {
  const auto find = [](verb method, const char* path) { return findRoute(method, *parseTarget(path)); };
  const auto message = find(verb::post, "/v1/sessions/abc/messages");
  ASSERT_TRUE(std::holds_alternative<RouteMatch>(message));
  EXPECT_THAT(std::get<RouteMatch>(message).ids, ElementsAre("abc"));
  EXPECT_TRUE(std::get<RouteMatch>(find(verb::get, "/v1/sessions/archived")).ids.empty());
  EXPECT_EQ(std::get<WrongVerb>(find(verb::put, "/v1/sessions")).allow, "GET, POST");
  for (const auto* path :
       {"/", "/v1", "/v1/sessions/", "/v1/sessions//messages", "/v1/sessions/a/messages/b", "/v2/models"}) {
    EXPECT_TRUE(std::holds_alternative<NoRoute>(find(verb::get, path))) << path;
  }
}

TEST(AllowedHosts, areComparedByNameAlone) {
  AllowedHosts hosts;
  hosts.add("My-Host.example");
  for (const auto* good : {"127.0.0.1", "127.0.0.1:9000", "LOCALHOST:1", "[::1]:80", "my-host.example:8737"}) {
    EXPECT_TRUE(hosts.contains(good)) << good;
  }
  for (const auto* bad : {"", "evil.example", "127.0.0.1.evil.example", "localhost.", "127.0.0.2", "[::2]"}) {
    EXPECT_FALSE(hosts.contains(bad)) << bad;
  }
}

TEST(Gzip, isUsedOnlyWhereItIsAccepted) {
  for (const auto* yes : {"gzip", "deflate, gzip;q=0.5, br", "gzip ; q=1"}) EXPECT_TRUE(acceptsGzip(yes)) << yes;
  for (const auto* no : {"", "identity", "gzip;q=0", "gzip;q=0.000", "x-gzip"}) EXPECT_FALSE(acceptsGzip(no)) << no;
  std::string text;
  for (int i = 0; i < 5000; ++i) text += std::to_string(i * i);
  const auto packed = gzip(text);
  ASSERT_TRUE(packed);
  EXPECT_LT(packed->size(), text.size());
  std::string unpacked(text.size() + 1, '\0');
  z_stream stream{};
  ASSERT_EQ(inflateInit2(&stream, 15 + 16), Z_OK);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed->data()));
  stream.avail_in = static_cast<uInt>(packed->size());
  stream.next_out = reinterpret_cast<Bytef*>(unpacked.data());
  stream.avail_out = static_cast<uInt>(unpacked.size());
  EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
  unpacked.resize(stream.total_out);
  inflateEnd(&stream);
  EXPECT_EQ(unpacked, text);
}

}  // namespace
}  // namespace varnel::http
