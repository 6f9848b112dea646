// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/markdown/inline.h"

using namespace varnel;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

/// Whether a text comes out of another by leaving characters out.
bool isLeftOf(std::string_view text, std::string_view source) {
  std::size_t at = 0;
  for (const char c : source) {
    if (at < text.size() && text[at] == c) ++at;
  }
  return at == text.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  const auto runs = markdown::inlineMarkdown(source);
  std::string text;
  const markdown::InlineRun* previous = nullptr;
  for (const auto& run : runs) {
    require(!run.text.empty());
    // Neighbours differ.
    require(previous == nullptr ||
            markdown::InlineRun{.text = run.text, .styles = previous->styles, .link = previous->link} != run);
    previous = &run;
    text += run.text;
  }
  // Without entities, whose text is another, what is read is what stands there less its markers.
  if (!source.contains('&')) require(isLeftOf(text, source));
  // What has no markers is left as it is.
  if (source.find_first_of("\\`*_~[]!<&") == std::string_view::npos) require(text == source);
  // White space that is in no link's address stays.
  if (source.find_first_of("&`[") == std::string_view::npos) {
    const auto lines = [](std::string_view in) { return std::ranges::count(in, '\n'); };
    require(lines(text) == lines(source));
  }
  return 0;
}
