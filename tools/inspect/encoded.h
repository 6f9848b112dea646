// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/json/record_codec.h"
#include "tools/inspect/subject.h"

namespace varnel::inspect {

/// A result of any type that the field codec writes. Heavy to include, as the codec is.
template <class Result>
Outcome encoded(const Result& result) {
  auto text = json::encodeText(result);
  if (!text) return std::unexpected(text.error().message());
  return *std::move(text);
}

}  // namespace varnel::inspect
