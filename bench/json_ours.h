// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json/raw_value.h"
#include "core/wire/event.h"
#include "core/wire/session_detail.h"

/// Our decoder in the shapes that are measured. Throws where the peers throw.
namespace varnel::bench {

/// A transcript item ready for a view: its strings as Qt wants them, its detail still folded.
struct Row {
  QString id;
  QString type;
  double timestamp = 0;
  std::optional<QString> role;
  std::optional<QString> phase;
  std::optional<QString> title;
  std::optional<QString> text;
  std::optional<json::RawValue> detail;
  std::optional<QString> status;
};

/// Takes the body as the client hands it over.
wire::SessionDetail detailByUs(std::string body);
/// Rows for all items, and the answer's other members into our records.
std::vector<Row> rowsByUs(std::string body);
/// The answer as our records, with rows for the last `most` items alone, which is what an application does.
std::vector<Row> rowsOnScreenByUs(std::string body, std::size_t most);
std::expected<wire::LiveEvent, json::DecodeError> eventByUs(std::string_view text);

}  // namespace varnel::bench
