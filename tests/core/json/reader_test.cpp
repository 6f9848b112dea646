// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <string_view>

#include "core/json/block_scan.h"
#include "core/json/codec.h"
#include "core/json/string_scan.h"
#include "core/json/text.h"

namespace varnel::json {
namespace {

using namespace std::string_literals;

std::string nested(std::string_view open, std::string_view close, int depth, std::string_view inner) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += open;
  text += inner;
  for (int i = 0; i < depth; ++i) text += close;
  return text;
}

/// A text that must be refused, whether it is read into a tree or only passed over.
struct Refused {
  std::string text;
  std::string reason;
};

TEST(Reader, RefusesTheSameTextsWhetherReadOrPassedOver) {
  const std::vector<Refused> cases = {
      {"", "unexpected end of text at byte 0"},
      {"   ", "unexpected end of text at byte 3"},
      {"nul", "unexpected \"n\" at byte 0"},
      {"[1,2", "unexpected end of text at byte 4"},
      {"[1,]", "unexpected \"]\" at byte 3"},
      {"[,1]", "unexpected \",\" at byte 1"},
      {"[1 2]", "unexpected \"2\" at byte 3"},
      {R"({"a":1,})", "unexpected \"}\" at byte 7"},
      {R"({"a" 1})", "unexpected \"1\" at byte 5"},
      {"{1:2}", "unexpected \"1\" at byte 1"},
      {"[1}", "unexpected \"}\" at byte 2"},
      {R"({"a":1])", "unexpected \"]\" at byte 6"},
      {"1 1", "unexpected \"1\" at byte 2"},
      {"é", R"(unexpected "\u{e9}" at byte 0)"},
      {"01", "unexpected \"1\" at byte 1"},
      {"-", "unexpected end of text at byte 1"},
      {"+1", "unexpected \"+\" at byte 0"},
      {".5", "unexpected \".\" at byte 0"},
      {"1.", "unexpected end of text at byte 2"},
      {"1e+", "unexpected end of text at byte 3"},
      {"NaN", "unexpected \"N\" at byte 0"},
      {"1e400", "number out of range"},
      {"-1" + std::string(400, '0'), "number out of range"},
      {R"("abc)", "unexpected end of text at byte 4"},
      {"\"a\nb\"", "control character in a string at byte 2"},
      {"\"a\0b\""s, "control character in a string at byte 2"},
      {"1\0"s, R"(unexpected "\u{0}" at byte 1)"},
      {R"("\x")", "bad escape at byte 1"},
      {R"("\u12g4")", "bad escape at byte 1"},
      {R"("\u12)", "bad escape at byte 1"},
      {R"("\ud800")", "lone surrogate at byte 1"},
      {R"("\ud800\u0041")", "lone surrogate at byte 1"},
      {R"("\udc00")", "lone surrogate at byte 1"},
      {"\"\xff\"", "not UTF-8"},
      {"\"\xed\xa0\x80\"", "not UTF-8"},
      {"\"\xc0\xaf\"", "not UTF-8"},
      {nested("[", "]", 513, ""), "nested deeper than 512"},
      {nested(R"({"a":)", "}", 513, "1"), "nested deeper than 512"},
      {std::string(1'000'000, '['), "nested deeper than 512"},
  };
  for (const Refused& refused : cases) {
    const auto tree = parse(refused.text);
    ASSERT_FALSE(tree) << refused.text.substr(0, 40);
    EXPECT_EQ(tree.error().reason, refused.reason) << refused.text.substr(0, 40);
    const auto raw = RawValue::parse(refused.text);
    ASSERT_FALSE(raw) << refused.text.substr(0, 40);
    EXPECT_EQ(raw.error().reason, refused.reason) << refused.text.substr(0, 40);
  }
}

TEST(Reader, KeepsWhatATextSays) {
  const std::string text =
      " { \"z\" : [ 1 , -0.5e1, true,false , null ] ,\"\\u0061\\n\":\"\\ud83d\\ude00\\/\\\"\\u0000é\" } ";
  const auto value = parse(text);
  ASSERT_TRUE(value) << value.error().message();
  const JSONValue::Object expected = {
      {"z", JSONValue::Array{1, -5.0, true, false, JSONValue()}},
      {"a\n", "😀/\"\0é"s},
  };
  EXPECT_EQ(*value, JSONValue(expected));
  EXPECT_TRUE(parse(nested("[", "]", 512, "")));
  EXPECT_TRUE(parse(nested(R"({"a":)", "}", 511, "[]")));
}

TEST(Reader, TakesTheLaterOfTwoMembersOfOneName) {
  EXPECT_EQ(parse(R"({"a":1,"b":2,"a":[3]})"), (JSONValue::Object{{"a", JSONValue::Array{3}}, {"b", 2}}));
}

TEST(Reader, RoundsNumbersToTheNearestDouble) {
  const auto number = [](std::string_view text) { return *parse(text)->number(); };
  EXPECT_EQ(number("1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(number("-1e-400")));
  EXPECT_EQ(number("0." + std::string(400, '0') + "1e401"), 1.0);
  EXPECT_EQ(number("5e-324"), 5e-324);
  EXPECT_EQ(number("1.7976931348623157e308"), 1.7976931348623157e308);
  EXPECT_EQ(number("0e999999999999999999999"), 0.0);
  EXPECT_EQ(number("123456789012345678901234567890"), 123456789012345678901234567890.0);
}

TEST(Reader, ReadsIntegersExactlyHoweverTheyAreWritten) {
  struct Case {
    std::string text;
    std::int64_t value;
  };
  const std::vector<Case> good = {
      {"0", 0},
      {"-0", 0},
      {"1.0", 1},
      {"1e2", 100},
      {"12.5e1", 125},
      {"-1200e-2", -12},
      {"9007199254740993", 9007199254740993},
      {"9007199254740993.000", 9007199254740993},
      {"9223372036854775807", INT64_MAX},
      {"-9223372036854775808", INT64_MIN},
      {"922337203685477580.7e1", INT64_MAX},
      {"0e99999999999999999999", 0},
      {"1" + std::string(300, '0') + "e-300", 1},
  };
  for (const Case& c : good) EXPECT_EQ(decodeText<std::int64_t>(c.text), c.value) << c.text;
  for (const std::string text :
       {"9223372036854775808", "-9223372036854775809", "1e19", "1e400", "1e99999999999999999999"}) {
    EXPECT_EQ(decodeText<std::int64_t>(text).error().reason, "integer out of range") << text;
  }
  for (const std::string text : {"0.5", "1e-1", "1e-400", "9223372036854775807.5"}) {
    EXPECT_EQ(decodeText<std::int64_t>(text).error().reason, "expected an integer, found a number with a fraction")
        << text;
  }
}

TEST(Reader, ResolvesAndChecksEscapesAtEveryOffset) {
  // Every place around the blocks in which a string is scanned once its first escape is found.
  struct Case {
    std::string raw;
    std::string value;
  };
  const std::vector<Case> good = {
      {R"(\n)", "\n"},    {R"(\\)", "\\"},           {R"(\\\\\\)", R"(\\\)"},       {R"(\\\"\\)", "\\\"\\"},
      {R"(\u0041)", "A"}, {R"(\ud83d\ude00)", "😀"}, {R"(\b\f\r\t\/)", "\b\f\r\t/"}};
  const std::vector<Case> bad = {{R"(\x)", "bad escape"},
                                 {R"(\\\u00g0)", "bad escape"},
                                 {R"(\udc00)", "lone surrogate"},
                                 {"\x01", "control character in a string"},
                                 {"\\\x01", "bad escape"}};
  const std::string tail(300, 'x');
  for (std::size_t offset = 0; offset < 140; ++offset) {
    const std::string begin = "\"\\n" + std::string(offset, 'a');
    for (const auto& [raw, value] : good) {
      for (const std::string& rest : {std::string(), tail}) {
        const std::string text = begin + raw + rest + "\"";
        EXPECT_EQ(parse(text), JSONValue("\n" + std::string(offset, 'a') + value + rest)) << text;
        EXPECT_TRUE(RawValue::parse(text)) << text;
        EXPECT_FALSE(RawValue::parse(text + "\"")) << text;
      }
    }
    for (const auto& [raw, reason] : bad) {
      const std::size_t at = offset + 3 + (raw.starts_with(R"(\\)") ? 2 : 0);
      const auto refused = RawValue::parse(begin + raw + tail + "\"");
      ASSERT_FALSE(refused) << raw;
      EXPECT_EQ(refused.error().reason, reason + " at byte " + std::to_string(at)) << raw;
    }
  }
}

TEST(Reader, ScansAndCopiesAlikeOnEveryProcessor) {
  const std::vector<std::string> pieces = {"a",         R"(\\)", R"(\")", R"(\n)",
                                           R"(\u001b)", R"(\/)", "é",     R"(\ud83d\ude00)"};
  const auto kernels = detail::blockKernels();
  std::minstd_rand random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    const auto length = random() % 300;
    while (text.size() < length)
      text += random() % 3 == 0 ? pieces[random() % pieces.size()] : std::string(random() % 40, 'x');
    const std::size_t size = text.size();
    text += '"' + std::string(200, random() % 2 == 0 ? '\\' : '"');
    const char* end = text.data() + text.size();
    const auto copied = [&](const detail::BlockKernel& kernel) {
      std::string out(size + 64, '\0');
      const auto at = kernel.copy({.from = text.data(), .to = out.data()}, text.data() + size, end);
      EXPECT_EQ(at.from, text.data() + size);
      out.resize(static_cast<std::size_t>(at.to - out.data()));
      return out;
    };
    const std::string value = *parse('"' + text.substr(0, size + 1))->string();
    for (const auto& kernel : kernels) {
      EXPECT_EQ(copied(kernel), value) << text;
      bool escaped = false;
      const char* stop = kernel.scan(text.data(), end, escaped);
      const std::string_view passed(text.data(), stop);
      EXPECT_TRUE(*stop == '"' ? passed.size() == size : text.substr(passed.size()).starts_with(R"(\ud83d)")) << text;
      EXPECT_EQ(escaped, passed.contains('\\') || *stop == '\\') << text;
    }
  }
}

TEST(Reader, FindsTheEndOfAPlainRunAtEveryOffset) {
  // Every special byte at every place of a run longer than two vectors, and the same by the portable way.
  for (const char special : {'"', '\\', '\n', '\0', '\x1f'}) {
    for (std::size_t length = 0; length < 70; ++length) {
      std::string text(length, '\x20');
      for (std::size_t i = 0; i < length; ++i) text[i] = "\xe9!\x7f"[i % 3];
      text += special;
      text += "tail\"";
      const char* end = text.data() + text.size();
      EXPECT_EQ(detail::skipPlain(text.data(), end) - text.data(), static_cast<std::ptrdiff_t>(length));
      EXPECT_EQ(detail::skipPlainPortable(text.data(), end) - text.data(), static_cast<std::ptrdiff_t>(length));
      EXPECT_EQ(detail::skipPlain(text.data(), text.data() + length), text.data() + length);
      EXPECT_EQ(detail::skipPlainPortable(text.data(), text.data() + length), text.data() + length);
    }
  }
}

TEST(Reader, TakesAVeryLargeTextInLinearTime) {
  std::string text = R"({"error":")";
  text.append(200'000'000, 'x');
  text += R"("})";
  const auto value = RawValue::parse(std::move(text));
  ASSERT_TRUE(value);
  EXPECT_EQ(value->text().size(), 200'000'012U);
}

}  // namespace
}  // namespace varnel::json
