// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <vector>

#include "tests/support/temporary_directory.h"
#include "tools/dictate/installed.h"
#include "tools/dictate/speech_cuts.h"

namespace varnel::dictate {
namespace {

namespace fs = std::filesystem;

class InstalledTest : public ::testing::Test {
 protected:
  void put(const std::string& path) {
    fs::create_directories((directory.path() / path).parent_path());
    std::ofstream(directory.path() / path) << "x";
  }
  [[nodiscard]] std::optional<Installed> find(const std::string& language) const {
    return findInstalled({directory.path() / "user", directory.path() / "system"}, language);
  }

  testing::TemporaryDirectory directory;
};

TEST_F(InstalledTest, NeedsTheLibraryAndAModelOfTheLanguage) {
  EXPECT_FALSE(find("en").has_value());
  for (const char* name : {"encoder_model.onnx", "decoder_model_merged.onnx"}) put("user/en/" + std::string(name));
  put("system/lib/libsherpa-onnx-c-api.so");
  EXPECT_FALSE(find("en").has_value()) << "no tokens";
  put("user/en/tokens.txt");
  ASSERT_TRUE(find("en").has_value());
  EXPECT_EQ(find("en")->kind, ModelKind::Moonshine);
  EXPECT_EQ(find("en")->library, directory.path() / "system/lib/libsherpa-onnx-c-api.so");
  EXPECT_FALSE(find("fr").has_value());
}

TEST_F(InstalledTest, KnowsLayoutsByTheirNamesAndPrefersTheLanguagesOwn) {
  put("user/lib/libsherpa-onnx-c-api.so");
  for (const char* name : {"encoder.int8.onnx", "decoder.int8.onnx", "tokens.txt", "README.md"}) {
    put("user/multi/" + std::string(name));
  }
  EXPECT_EQ(find("fr")->kind, ModelKind::Canary);
  for (const char* name : {"base-encoder.onnx", "base-encoder.int8.onnx", "base-decoder.onnx", "base-tokens.txt"}) {
    put("user/fr/" + std::string(name));
  }
  const auto french = find("fr");
  EXPECT_EQ(french->kind, ModelKind::Whisper);
  EXPECT_EQ(french->encoder.filename(), "base-encoder.int8.onnx");
  EXPECT_EQ(french->tokens.filename(), "base-tokens.txt");
  EXPECT_EQ(find("en")->kind, ModelKind::Canary);
}

TEST(Locales, AreReducedToTheLanguage) {
  EXPECT_EQ(languageOf("fr-CA"), "fr");
  EXPECT_EQ(languageOf("en_US"), "en");
  EXPECT_EQ(languageOf("en"), "en");
}

constexpr int kRate = 16000;

/// Speech of that length and level, or silence.
std::vector<std::int16_t> sound(double seconds, double level) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * kRate));
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<std::int16_t>(level * std::sin(static_cast<double>(i) * 0.3));
  }
  return samples;
}

std::vector<std::int16_t> operator+(std::vector<std::int16_t> first, const std::vector<std::int16_t>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

double cutSeconds(const std::vector<std::int16_t>& samples) {
  return static_cast<double>(cutAfter(samples, kRate)) / kRate;
}

TEST(SpeechCuts, ComeInAPauseOnceThereIsEnough) {
  EXPECT_EQ(cutSeconds({}), 0);
  EXPECT_EQ(cutSeconds(sound(20, 5000)), 0) << "no pause yet";
  EXPECT_EQ(cutSeconds(sound(5, 5000) + sound(0.6, 0) + sound(2, 5000)), 0) << "too short to be cut";
  EXPECT_EQ(cutSeconds(sound(9, 5000) + sound(0.3, 0) + sound(3, 5000)), 0) << "a breath";
  EXPECT_NEAR(cutSeconds(sound(9, 5000) + sound(0.6, 0) + sound(3, 5000)), 9.2, 0.05);
  EXPECT_NEAR(cutSeconds(sound(9, 20000) + sound(0.6, 1000)), 9.2, 0.05) << "quiet beside what was loud";
}

TEST(SpeechCuts, ComeAtTheQuietestMomentWhenNobodyPauses) {
  EXPECT_NEAR(cutSeconds(sound(20, 5000) + sound(0.1, 2000) + sound(6, 5000)), 20.05, 0.08);
}

TEST(EvenMargins, AreTheSameHoweverLongOneWaits) {
  const auto speech = sound(1, 5000);
  const auto expected = sound(0.5, 0) + speech + sound(0.5, 0);
  EXPECT_EQ(withEvenMargins(speech, kRate), expected);
  EXPECT_EQ(withEvenMargins(sound(3, 0) + speech + sound(2, 0), kRate), expected);
  EXPECT_EQ(withEvenMargins(sound(0.2, 0) + speech + sound(2, 0), kRate), expected);
  const auto pause = speech + sound(1, 0) + speech;
  EXPECT_EQ(withEvenMargins(pause, kRate).size(), pause.size() + static_cast<std::size_t>(kRate));
  for (const auto& quiet : {sound(1, 0), sound(0.001, 5000), sound(0, 0)})
    EXPECT_EQ(withEvenMargins(quiet, kRate), quiet);
}

}  // namespace
}  // namespace varnel::dictate
