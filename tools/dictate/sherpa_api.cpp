// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "tools/dictate/sherpa_api.h"

#include <dlfcn.h>

#include <string_view>

namespace varnel::dictate::sherpa {
namespace {

template <class Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  return function != nullptr;
}

}  // namespace

bool Api::load(const char* path) {
  void* library = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  Text (*version)() = nullptr;
  if (!find(library, "SherpaOnnxGetVersionStr", version)) return false;
  if (!std::string_view(version()).starts_with("1.13.")) return false;
  return find(library, "SherpaOnnxCreateOfflineRecognizer", createRecognizer) &&
         find(library, "SherpaOnnxCreateOfflineStream", createStream) &&
         find(library, "SherpaOnnxDestroyOfflineStream", destroyStream) &&
         find(library, "SherpaOnnxAcceptWaveformOffline", acceptWaveform) &&
         find(library, "SherpaOnnxDecodeOfflineStream", decode) &&
         find(library, "SherpaOnnxGetOfflineStreamResult", result) &&
         find(library, "SherpaOnnxDestroyOfflineRecognizerResult", destroyResult);
}

}  // namespace varnel::dictate::sherpa
