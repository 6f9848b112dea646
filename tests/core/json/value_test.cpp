// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/json/value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/json/raw_value.h"
#include "core/json/text.h"

namespace varnel::json {
namespace {

TEST(JSONValue, PrettyPrintsContainersWithSortedKeys) {
  const auto value = parse(R"({"b":[1,{"y":"a/b"},[]],"a":{},"c":null,"é":0.1})");
  EXPECT_EQ(value->prettyPrinted(),
            "{\n  \"a\": {},\n  \"b\": [\n    1,\n    {\n      \"y\": \"a\\/b\"\n    },\n    []\n  ],\n"
            "  \"c\": null,\n  \"é\": 0.1\n}");
}

TEST(JSONValue, DescribesWhatCannotBePrettyPrinted) {
  EXPECT_EQ(JSONValue("abc").prettyPrinted(), R"(string("abc"))");
  EXPECT_EQ(JSONValue("a\"b\\\n/").prettyPrinted(), R"(string("a\"b\\\n/"))");
  EXPECT_EQ(JSONValue(2).prettyPrinted(), "number(2.0)");
  EXPECT_EQ(JSONValue(0.1).prettyPrinted(), "number(0.1)");
  EXPECT_EQ(JSONValue(1e-5).prettyPrinted(), "number(1e-05)");
  EXPECT_EQ(JSONValue(1e300).prettyPrinted(), "number(1e+300)");
  EXPECT_EQ(JSONValue(true).prettyPrinted(), "bool(true)");
  EXPECT_EQ(JSONValue().prettyPrinted(), "null");
  EXPECT_EQ(JSONValue(JSONValue::Array{std::nan(""), "x"}).prettyPrinted(), R"(array([number(nan), string("x")]))");
  EXPECT_EQ(JSONValue(JSONValue::Object{{"k", "\xff"}}).prettyPrinted(), "object([\"k\": string(\"\xff\")])");
}

TEST(JSONValue, WritesNumbersThatReadBackEqual) {
  const auto text = [](double number) { return *write(JSONValue(number)); };
  EXPECT_EQ(text(1), "1");
  EXPECT_EQ(text(-3e2), "-300");
  EXPECT_EQ(text(9007199254740992.0), "9007199254740992");
  EXPECT_EQ(text(0.1), "0.1");
  EXPECT_EQ(text(-0.0), "-0");
  for (const double number : {1e22, 1.5e-7, 5e-324, std::numeric_limits<double>::max(), 1795376263.125, -0.0}) {
    EXPECT_EQ(*parse(text(number))->number(), number);
  }
  EXPECT_EQ(write(JSONValue(JSONValue::Object{{"a", JSONValue::Array{1, INFINITY}}})).error().message(),
            "\"a\"[1]: number is not finite");
  EXPECT_EQ(write(JSONValue("\xc3")).error().message(), "text is not UTF-8");
}

TEST(JSONValue, HashesByStructure) {
  const auto hash = [](std::string_view text) { return parse(text)->hash(); };
  EXPECT_EQ(hash(R"({"a":1,"b":[true]})"), hash(R"( {"b":[true],"a":1.0})"));
  EXPECT_NE(hash(R"({"a":1})"), hash(R"({"a":"1"})"));
  EXPECT_NE(hash("[1,2]"), hash("[2,1]"));
  EXPECT_NE(hash("[]"), hash("{}"));
}

TEST(RawValue, BehavesAsTheValueItStandsFor) {
  const auto a = RawValue::parse(R"({"x" : 1.0, "y":"\u0041"})");
  const auto b = RawValue::parse(R"({"y":"A","x":1})");
  EXPECT_EQ(*a, *b);
  EXPECT_EQ(a->hash(), b->hash());
  EXPECT_NE(*a, *RawValue::parse(R"({"y":"A","x":2})"));
  EXPECT_EQ(a->value(), b->value());
  EXPECT_EQ(RawValue(a->value()), *a);
}

}  // namespace
}  // namespace varnel::json
