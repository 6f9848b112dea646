// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/dictate/installed.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <system_error>

namespace varnel::dictate {
namespace {

namespace fs = std::filesystem;

struct Layout {
  ModelKind kind;
  std::string_view encoder;
  std::string_view decoder;
};
constexpr std::array kLayouts{
    Layout{ModelKind::Moonshine, "encoder_model.", "decoder_model_merged."},
    Layout{ModelKind::Whisper, "-encoder.", "-decoder."},
    Layout{ModelKind::Canary, "encoder.int8.", "decoder.int8."},
};

std::vector<std::string> namesIn(const fs::path& folder) {
  std::error_code ignored;  // a folder that is not there holds nothing
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) names.push_back(entry.path().filename().string());
  std::ranges::sort(names);  // of "x.int8.onnx" and "x.onnx" the smaller file comes first
  return names;
}

std::optional<fs::path> pick(const fs::path& folder, const std::vector<std::string>& names, std::string_view part) {
  const auto found = std::ranges::find_if(
      names, [&](const std::string& name) { return name.find(part) != std::string::npos && !name.ends_with(".md"); });
  if (found == names.end()) return std::nullopt;
  return folder / *found;
}

bool findModel(const fs::path& folder, Installed& installed) {
  const auto names = namesIn(folder);
  const auto tokens = pick(folder, names, "tokens.txt");
  for (const Layout& layout : kLayouts) {
    const auto encoder = pick(folder, names, layout.encoder);
    const auto decoder = pick(folder, names, layout.decoder);
    if (!encoder || !decoder || !tokens) continue;
    installed.kind = layout.kind;
    installed.encoder = *encoder;
    installed.decoder = *decoder;
    installed.tokens = *tokens;
    return true;
  }
  return false;
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

}  // namespace

std::vector<fs::path> speechFolders() {
  if (const std::string only = environment("VARNEL_SPEECH_DIR"); !only.empty()) return {only};
  std::vector<fs::path> folders;
  if (const std::string data = environment("XDG_DATA_HOME"); !data.empty()) {
    folders.push_back(fs::path(data) / "varnel" / "speech");
  } else if (const std::string home = environment("HOME"); !home.empty()) {
    folders.push_back(fs::path(home) / ".local" / "share" / "varnel" / "speech");
  }
  folders.emplace_back("/usr/local/share/varnel/speech");
  folders.emplace_back("/usr/share/varnel/speech");
  return folders;
}

std::string languageOf(const std::string& locale) {
  return locale.substr(0, locale.find_first_of("-_"));
}

std::optional<Installed> findInstalled(const std::vector<fs::path>& folders, const std::string& language) {
  Installed installed;
  bool hasModel = false;
  for (const fs::path& folder : folders) {
    std::error_code ignored;
    const fs::path library = folder / "lib" / "libsherpa-onnx-c-api.so";
    if (installed.library.empty() && fs::exists(library, ignored)) installed.library = library;
    hasModel = hasModel || findModel(folder / language, installed) || findModel(folder / "multi", installed);
  }
  if (installed.library.empty() || !hasModel) return std::nullopt;
  return installed;
}

}  // namespace varnel::dictate
