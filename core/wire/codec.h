// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "core/json/decode_error.h"

/// Every record between its bytes and its fields. Instantiated in this folder for each record of `core/wire` (and
/// lists of the listed ones), so that including this header costs nothing.
///
/// Strict: a missing, null or mistyped required field, an integer field that is not integral or does not fit 64 bits,
/// and an unknown name of an enumeration fail the whole record and all that holds it. Unknown keys are skipped, though
/// what stands under them must be JSON. An optional field may be missing or null. The text must be UTF-8 and exactly
/// one value, nested at most 512 deep. Of a key that stands twice the later one holds.
namespace varnel::wire {

template <class Record>
std::expected<Record, json::DecodeError> decode(std::string_view text);

/// Writes the fields in declared order, absent optional ones not at all. Fails only when a text is not UTF-8 or a
/// number is not finite; the failure names the field.
template <class Record>
std::expected<std::string, json::DecodeError> encode(const Record& record);

template <class Record>
std::size_t hashOf(const Record& record);

}  // namespace varnel::wire
