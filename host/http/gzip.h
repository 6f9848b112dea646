// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel::http {

/// Smaller answers are sent as they are.
inline constexpr std::size_t kWorthCompressing = 1400;

/// True when an Accept-Encoding header lets gzip through.
bool acceptsGzip(std::string_view acceptEncoding);

/// Nothing when the library fails; the answer is then sent as it is.
std::optional<std::string> gzip(std::string_view text);

}  // namespace varnel::http
