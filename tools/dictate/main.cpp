// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// varnel-dictate: recognises what is spoken, in a process of its own.
//
//   varnel-dictate --probe LOCALE   exit 0 when that can be recognised here, 3 when not
//   varnel-dictate LOCALE [RATE]    standard input: one channel of signed 16-bit samples until it closes; standard
//                                   output: the text
//
// A library that meets a model it cannot read ends its process or throws out of C: then this one ends, and not the
// application. So does the memory that a model takes.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tools/dictate/installed.h"
#include "tools/dictate/sherpa_api.h"
#include "tools/dictate/speech_cuts.h"

namespace {

using namespace varnel::dictate;

constexpr int kWrongUsage = 2;
constexpr int kUnavailable = 3;
constexpr int kDefaultRate = 16000;

/// What is spoken, as it comes in. Read on a thread of its own, so that none is lost while the model loads.
class Audio {
 public:
  void readAll() {
    std::array<char, 4096> bytes{};
    std::size_t held = 0;
    for (;;) {
      const ssize_t count = ::read(STDIN_FILENO, bytes.data() + held, bytes.size() - held);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      held += static_cast<std::size_t>(count);
      append({bytes.data(), held / 2 * 2});
      if (held % 2 != 0) bytes[0] = bytes[held - 1];
      held %= 2;
    }
    const std::lock_guard lock(m_mutex);
    m_isEnded = true;
    m_changed.notify_one();
  }

  /// Waits for the next piece that is to be recognised by itself, the last one included; nothing after that.
  std::optional<std::vector<std::int16_t>> next(int rate) {
    std::unique_lock lock(m_mutex);
    if (m_isTaken) return std::nullopt;
    std::size_t length = 0;
    m_changed.wait(lock, [&] {
      length = cutAfter(m_samples, rate);
      return length != 0 || m_isEnded;
    });
    m_isTaken = length == 0;
    if (m_isTaken) length = m_samples.size();
    const auto end = m_samples.begin() + static_cast<std::ptrdiff_t>(length);
    std::vector<std::int16_t> piece(m_samples.begin(), end);
    m_samples.erase(m_samples.begin(), end);
    return piece;
  }

 private:
  void append(std::span<const char> bytes) {
    const std::lock_guard lock(m_mutex);
    const std::size_t before = m_samples.size();
    m_samples.resize(before + bytes.size() / 2);
    std::memcpy(m_samples.data() + before, bytes.data(), bytes.size());
    m_changed.notify_one();
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<std::int16_t> m_samples;  ///< not yet taken
  bool m_isEnded = false;
  bool m_isTaken = false;  ///< the last piece
};

class Recogniser {
 public:
  Recogniser(const Installed& installed, const std::string& language) {
    if (!m_api.load(installed.library.c_str())) return;
    sherpa::RecognizerConfig config{};
    config.features = {.sampleRate = 16000, .dimension = 80};
    config.decodingMethod = "greedy_search";
    config.model.tokens = installed.tokens.c_str();
    config.model.provider = "cpu";
    // Two threads on two busy cores only wait for each other.
    config.model.threads = std::thread::hardware_concurrency() > 2 ? 2 : 1;
    const char* encoder = installed.encoder.c_str();
    const char* decoder = installed.decoder.c_str();
    switch (installed.kind) {
      case ModelKind::Moonshine:
        config.model.moonshine.encoder = encoder;
        config.model.moonshine.mergedDecoder = decoder;
        break;
      case ModelKind::Whisper:
        config.model.whisper = {encoder, decoder, language.c_str(), "transcribe", -1, 0, 0};
        break;
      case ModelKind::Canary:
        config.model.canary = {encoder, decoder, language.c_str(), language.c_str(), 1};
        break;
    }
    m_recognizer = m_api.createRecognizer(&config);
  }

  [[nodiscard]] bool isReady() const { return m_recognizer != nullptr; }

  [[nodiscard]] std::string textOf(const std::vector<std::int16_t>& piece, int rate) const {
    const auto shortest = static_cast<std::size_t>(rate) / 10;  // below that the library only complains
    if (piece.size() < shortest) return {};
    const std::vector<std::int16_t> speech = withEvenMargins(piece, rate);
    std::vector<float> samples(speech.size());
    std::ranges::transform(speech, samples.begin(), [](std::int16_t sample) {
      constexpr float kFull = 32768;
      return static_cast<float>(sample) / kFull;
    });
    const void* stream = m_api.createStream(m_recognizer);
    m_api.acceptWaveform(stream, rate, samples.data(), static_cast<std::int32_t>(samples.size()));
    m_api.decode(m_recognizer, stream);
    std::string text;
    if (const sherpa::Result* result = m_api.result(stream); result != nullptr) {
      if (result->text != nullptr) text = result->text;
      m_api.destroyResult(result);
    }
    m_api.destroyStream(stream);
    return text;
  }

 private:
  sherpa::Api m_api;
  const void* m_recognizer = nullptr;
};

int unavailable() {
  std::fputs("varnel-dictate: no recogniser for that language is installed\n", stderr);
  return kUnavailable;
}

int probe(const std::string& locale) {
  const auto installed = findInstalled(speechFolders(), languageOf(locale));
  return installed && sherpa::Api().load(installed->library.c_str()) ? 0 : unavailable();
}

/// Ends the process: nothing of the library needs an orderly end, and the reader may still wait for its input.
[[noreturn]] void endNow(int code) {
  std::fflush(stdout);
  ::_exit(code);
}

[[noreturn]] void dictate(const std::string& locale, int rate) {
  const std::string language = languageOf(locale);
  const auto installed = findInstalled(speechFolders(), language);
  if (!installed) endNow(unavailable());
  Audio audio;
  const std::jthread reader([&audio] { audio.readAll(); });
  const Recogniser recogniser(*installed, language);
  if (!recogniser.isReady()) endNow(unavailable());

  std::string text;
  while (const auto piece = audio.next(rate)) {
    const std::string spoken = recogniser.textOf(*piece, rate);
    if (!text.empty() && !spoken.empty()) text += ' ';
    text += spoken;
  }
  text += '\n';
  std::fputs(text.c_str(), stdout);
  endNow(0);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 2 && arguments[0] == "--probe") return probe(arguments[1]);
  const int rate = arguments.size() == 2 ? std::atoi(arguments[1].c_str()) : kDefaultRate;
  if (arguments.empty() || arguments.size() > 2 || arguments[0].starts_with("-") || rate <= 0) {
    std::fputs("usage: varnel-dictate LOCALE [RATE] | varnel-dictate --probe LOCALE\n", stderr);
    return kWrongUsage;
  }
  dictate(arguments[0], rate);
}
