// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The part of sherpa-onnx's C interface that dictation uses, in versions 1.13.x. The library is found at run time and
/// its packages hold no header, so this is what must not be wrong: the offsets are asserted below, and another version
/// is refused, since new engines are added in the middle of the structure.
namespace varnel::dictate::sherpa {

using Text = const char*;

struct Features {
  std::int32_t sampleRate, dimension;
};

struct Whisper {
  Text encoder, decoder, language, task;
  std::int32_t tailPaddings, tokenTimestamps, segmentTimestamps;
};
struct SenseVoice {
  Text model, language;
  std::int32_t useItn;
};
struct Moonshine {
  Text preprocessor, encoder, uncachedDecoder, cachedDecoder, mergedDecoder;
};
struct Canary {
  Text encoder, decoder, sourceLanguage, targetLanguage;
  std::int32_t usePunctuation;
};
struct FunAsr {
  std::array<Text, 6> texts;
  std::int32_t mostTokens;
  float temperature, topP;
  std::int32_t seed;
  Text language;
  std::int32_t useItn;
  Text hotwords;
};
struct Qwen {
  std::array<Text, 4> texts;
  std::int32_t mostInAll, mostTokens;
  float temperature, topP;
  std::int32_t seed;
  Text hotwords;
};
struct Cohere {
  Text encoder, decoder, language;
  std::int32_t usePunctuation, useItn;
};

struct ModelConfig {
  std::array<Text, 3> transducer;
  Text paraformer, nemoCtc;
  Whisper whisper;
  Text tdnn, tokens;
  std::int32_t threads, debug;
  Text provider, modelType, modelingUnit, bpeVocabulary, telespeech;
  SenseVoice senseVoice;
  Moonshine moonshine;
  std::array<Text, 2> fireRed;
  Text dolphin, zipformerCtc;
  Canary canary;
  Text wenet, omnilingual, medAsr;
  FunAsr funAsr;
  Text fireRedCtc;
  Qwen qwen;
  Cohere cohere;
};

struct LanguageModel {
  Text model;
  float scale;
};

struct RecognizerConfig {
  Features features;
  ModelConfig model;
  LanguageModel languageModel;
  Text decodingMethod;
  std::int32_t maxActivePaths;
  Text hotwordsFile;
  float hotwordsScore;
  Text ruleFsts, ruleFars;
  float blankPenalty;
  std::array<Text, 3> homophones;
  std::array<char, 512> reserved;  ///< zero, for what a later 1.13.x adds at the end
};

// The same on x86-64 and aarch64.
static_assert(sizeof(ModelConfig) == 504);
static_assert(offsetof(ModelConfig, whisper) == 40);
static_assert(offsetof(ModelConfig, moonshine) == 176);
static_assert(offsetof(ModelConfig, canary) == 248);
static_assert(offsetof(RecognizerConfig, decodingMethod) == 528);
static_assert(offsetof(RecognizerConfig, homophones) == 584);

struct Result {
  Text text;  ///< the first member; the others are not read
};

/// The library's functions. Nothing of it is ever unloaded: the process ends soon.
class Api {
 public:
  /// Loads the library of that path. False when it is not one of ours to use.
  bool load(const char* path);

  const void* (*createRecognizer)(const RecognizerConfig*) = nullptr;
  const void* (*createStream)(const void* recognizer) = nullptr;
  void (*destroyStream)(const void* stream) = nullptr;
  /// Once for a stream; samples between -1 and 1, at any rate.
  void (*acceptWaveform)(const void* stream, std::int32_t rate, const float* samples, std::int32_t count) = nullptr;
  void (*decode)(const void* recognizer, const void* stream) = nullptr;
  const Result* (*result)(const void* stream) = nullptr;
  void (*destroyResult)(const Result*) = nullptr;
};

}  // namespace varnel::dictate::sherpa
