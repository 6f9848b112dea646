// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/frame_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

namespace varnel::platform {
namespace {

constexpr qsizetype kBytesInSample = sizeof(std::int16_t);

/// Between -1 and 1.
float sampleAt(const QAudioFormat& format, const char* frame, int channel) {
  return format.normalizedSampleValue(frame + qsizetype{channel} * format.bytesPerSample());
}

std::int16_t mixed(const QAudioFormat& format, const char* frame) {
  constexpr float kFull = 32767;
  float sum = 0;
  for (int channel = 0; channel < format.channelCount(); ++channel) sum += sampleAt(format, frame, channel);
  const float mean = sum / static_cast<float>(format.channelCount());
  return static_cast<std::int16_t>(std::lround(std::clamp(mean, -1.0F, 1.0F) * kFull));
}

}  // namespace

FrameBuffer::FrameBuffer(const QAudioFormat& format, int framesInBuffer)
    : m_format(format), m_bufferSize(framesInBuffer * kBytesInSample) {}

void FrameBuffer::append(const QByteArray& bytes) {
  m_raw += bytes;
  const qsizetype frameSize = m_format.bytesPerFrame();
  if (frameSize == 0) return;
  const qsizetype frames = m_raw.size() / frameSize;
  const qsizetype before = m_samples.size();
  m_samples.resize(before + frames * kBytesInSample);
  for (qsizetype i = 0; i < frames; ++i) {
    const std::int16_t sample = mixed(m_format, m_raw.constData() + i * frameSize);
    std::memcpy(m_samples.data() + before + i * kBytesInSample, &sample, sizeof sample);
  }
  m_raw.remove(0, frames * frameSize);
}

QByteArray FrameBuffer::take() {
  if (m_samples.size() < m_bufferSize) return {};
  QByteArray buffer = m_samples.left(m_bufferSize);
  m_samples.remove(0, m_bufferSize);
  return buffer;
}

QByteArray FrameBuffer::takeRest() {
  m_raw.clear();
  return std::exchange(m_samples, {});
}

}  // namespace varnel::platform
