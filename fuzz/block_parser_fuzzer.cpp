// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/markdown/block_views.h"
#include "core/markdown/parse_blocks.h"
#include "tests/core/markdown/naive_blocks.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// The source lines of the blocks follow each other, and what stands between them is blank.
void requirePartition(std::string_view source, const markdown::BlockViews& views) {
  const auto lines = markdown::naive::lines(std::string(source));
  std::size_t next = 0;
  const auto passBlank = [&](std::size_t end) {
    for (; next < end; ++next) require(markdown::naive::trim(lines[next]).empty());
  };
  for (const markdown::BlockView& block : views.blocks()) {
    require(block.source.begin >= next && block.source.begin < block.source.end && block.source.end <= lines.size());
    passBlank(block.source.begin);
    require(!markdown::naive::trim(lines[next]).empty());
    next = block.source.end;
  }
  passBlank(lines.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  static markdown::BlockViews views;  // reused, as its memory is meant to be
  views.parse(source);
  requirePartition(source, views);
  require(markdown::parseTranscriptMarkdown(source) == markdown::naive::Parser(source).parse());
  return 0;
}
