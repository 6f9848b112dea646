// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What the user has installed for dictation.
namespace varnel::dictate {

/// How the files of a model are laid out, which their names tell.
enum class ModelKind { Moonshine, Whisper, Canary };

struct Installed {
  std::filesystem::path library;
  ModelKind kind = ModelKind::Moonshine;
  std::filesystem::path encoder;
  std::filesystem::path decoder;
  std::filesystem::path tokens;
};

/// The folders to look in, the first one first: `VARNEL_SPEECH_DIR` alone when it is set, else the user's data folder
/// and the system's.
std::vector<std::filesystem::path> speechFolders();

/// "en" of "en-CA".
std::string languageOf(const std::string& locale);

/// The library is in "lib" of one of the folders, the model in the folder of its language or, when there is none
/// there, in "multi". Nothing when one of the two is missing.
std::optional<Installed> findInstalled(const std::vector<std::filesystem::path>& folders, const std::string& language);

}  // namespace varnel::dictate
