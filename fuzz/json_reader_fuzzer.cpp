// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "core/json/raw_value.h"
#include "core/json/text.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// Whether an independent reader takes the same bytes; nothing where it cannot tell.
std::optional<bool> peerAccepts(std::string_view text) {
  constexpr unsigned kFlags = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseNumbersAsStringsFlag;
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::BaseReaderHandler<> handler;
  rapidjson::Reader reader;
  const auto result = reader.Parse<kFlags>(stream, handler);
  // It stops at a large exponent, even of zero.
  if (result.Code() == rapidjson::kParseErrorNumberTooBig) return std::nullopt;
  return !result.IsError();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto tree = json::parse(text);
  const auto raw = json::RawValue::parse(std::string(text));
  // Reading and passing over are equally strict.
  require(tree.has_value() == raw.has_value());
  // The peer takes a NUL for the end.
  if (text.find('\0') == std::string_view::npos) {
    const bool ourOwnLimit =
        !tree && (tree.error().reason.starts_with("lone surrogate") ||
                  tree.error().reason.starts_with("nested deeper") || tree.error().reason == "number out of range");
    require(ourOwnLimit || peerAccepts(text).value_or(tree.has_value()) == tree.has_value());
  }
  if (!tree) {
    require(!tree.error().message().empty());
    return 0;
  }
  require(raw->value() == *tree && raw->hash() == tree->hash());
  // What is written reads back equal, and is written the same again.
  const auto written = json::write(*tree);
  require(written.has_value());
  const auto again = json::parse(*written);
  require(again && *again == *tree && json::write(*again) == written);
  require(!tree->prettyPrinted().empty());
  return 0;
}
