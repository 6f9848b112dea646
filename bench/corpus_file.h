// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

/// What corpus.py makes beside the program when that is built. Whatever cannot be read throws.
namespace varnel::bench {

/// The folder of this program.
std::string programFolder();

std::string corpusPath(std::string_view file);

/// Throws unless the file has that SHA-256.
std::string loadCorpus(std::string_view file, std::string_view sha256);

std::string readFile(const std::string& file);

}  // namespace varnel::bench
