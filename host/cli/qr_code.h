// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace varnel::cli {

/// Lines of half blocks with two quiet modules around: 41 columns and 21 rows for a text of at most 106 bytes. Light
/// modules are the blocks; with colours they are white on black whatever the terminal's own are, without them the code
/// is right on a dark terminal. Nothing when the text is too long for any code.
std::expected<std::string, std::string> drawQrCode(std::string_view text, bool withColours);

/// A picture that any camera reads, 0600, since the text is a secret. Why not, when it cannot be written.
std::expected<void, std::string> writeQrPicture(std::string_view text, const std::filesystem::path& file);

}  // namespace varnel::cli
