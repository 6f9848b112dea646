// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "core/wire/codec.h"
#include "host/service/failure.h"

namespace varnel::service {

/// Logs what is wrong with an answer of ours and gives the failure that is sent in its place.
std::unexpected<Failure> unsendable(std::string_view what, const json::DecodeError& error);

/// The JSON text of a record, read back by the codec that the phone has: what it could not read is not sent.
template <class Record>
Outcome<std::string> checkedText(std::string_view what, const Record& record) {
  auto text = wire::encode(record);
  if (!text) return unsendable(what, text.error());
  if (auto read = wire::decode<Record>(*text); !read) return unsendable(what, read.error());
  return std::move(*text);
}

}  // namespace varnel::service
