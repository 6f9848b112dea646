// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>

/// Figures that need a process of their own: this program runs itself with `--rss`.
namespace varnel::bench {

/// The most memory that decoding holds beside the body, as a multiple of the body.
std::expected<double, std::string> peakAboveBody(const std::string& file);

/// The work of a process that counts instructions. `onlyRead` leaves the decoding out.
void decodeOnce(const std::string& file, bool onlyRead);
/// Prints the bytes.
void printPeakAboveBody(const std::string& file);

}  // namespace varnel::bench
