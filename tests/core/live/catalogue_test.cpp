// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "core/live/catalogue.h"

#include <gtest/gtest.h>

#include "core/json/text.h"

namespace varnel::live {
namespace {

std::vector<wire::ModelOption> parse(std::string_view text) {
  return parseModels(json::parse(text).value());
}

wire::ModelOption bare(std::string id) {
  wire::ModelOption model;
  model.id = id;
  model.displayName = std::move(id);
  return model;
}

TEST(Catalogue, AnUnexpectedAnswerIsEmpty) {
  for (const auto* text : {"null", "3", "\"data\"", "[]", "[{\"id\": \"m\"}]", "{}", "{\"models\": []}",
                           "{\"data\": {}}", "{\"data\": null}", "{\"data\": []}"}) {
    EXPECT_TRUE(parse(text).empty()) << text;
  }
}

TEST(Catalogue, AnIdIsEnoughAndNothingElseIsNeeded) {
  EXPECT_EQ(parse(R"({"data": [{"id": "m1"}]})"), std::vector{bare("m1")});
  EXPECT_EQ(parse(R"({"data": [{"id": 1}, {}, "m", null, {"displayName": "x"}, {"id": "m2"}, {"id": "m2"}]})"),
            (std::vector{bare("m2"), bare("m2")}));
}

TEST(Catalogue, MistypedMembersCountAsMissing) {
  EXPECT_EQ(parse(R"({"data": [{"id": "m1", "displayName": 1, "supportedReasoningEfforts": "low",
                     "defaultReasoningEffort": [], "isDefault": "true", "serviceTiers": {}}]})"),
            std::vector{bare("m1")});
}

TEST(Catalogue, TakesEffortsInBothForms) {
  const auto models = parse(R"({"data": [{"id": "m", "supportedReasoningEfforts":
                               ["low", {"reasoningEffort": "high"}, 3, {"reasoningEffort": 1}, {}, null]}]})");
  EXPECT_EQ(models.at(0).efforts, (std::vector<std::string>{"low", "high"}));
}

TEST(Catalogue, ReadsAWholeModel) {
  const auto models = parse(R"({"data": [{"id": "m", "displayName": "M", "isDefault": true,
      "defaultReasoningEffort": "low", "serviceTiers": [{"id": "fast", "name": "Fast"}, {"id": "nameless"},
      {"name": "idless"}, {"id": "slow", "name": "Slow", "description": "Takes its time"}]}]})");
  const wire::ModelOption expected{
      .id = "m",
      .displayName = "M",
      .efforts = {},
      .defaultEffort = "low",
      .isDefault = true,
      .serviceTiers = {{"fast", "Fast", "Fast"}, {"slow", "Slow", "Takes its time"}},
  };
  EXPECT_EQ(models, std::vector{expected});
}

}  // namespace
}  // namespace varnel::live
