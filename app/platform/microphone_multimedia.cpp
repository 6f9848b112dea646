// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "app/platform/microphone_multimedia.h"

#include <QAudioDevice>
#include <QAudioSource>
#include <QMediaDevices>
#include <utility>

namespace varnel::platform {
namespace {

QAudioFormat formatFor(const QAudioDevice& device) {
  QAudioFormat format;
  format.setSampleRate(AudioFormat().sampleRate);
  format.setChannelCount(1);
  format.setSampleFormat(QAudioFormat::Int16);
  return device.isFormatSupported(format) ? format : device.preferredFormat();
}

}  // namespace

MultimediaMicrophone::MultimediaMicrophone(QObject* parent) : Microphone(parent) {}

MultimediaMicrophone::~MultimediaMicrophone() = default;

QCoro::Task<bool> MultimediaMicrophone::requestPermission() {
  co_return true;
}

std::expected<AudioFormat, QString> MultimediaMicrophone::start() {
  const QAudioDevice device = QMediaDevices::defaultAudioInput();
  if (device.isNull()) return std::unexpected(QStringLiteral("there is no microphone"));
  const QAudioFormat format = formatFor(device);
  auto source = std::make_unique<QAudioSource>(device, format);
  QIODevice* input = source->start();
  if (input == nullptr || source->error() != QAudio::NoError) {
    return std::unexpected(QStringLiteral("the microphone cannot be opened"));
  }
  m_buffer.emplace(format, kFramesInBuffer);
  m_source = std::move(source);
  m_input = input;
  connect(input, &QIODevice::readyRead, this, &MultimediaMicrophone::deliver);
  return AudioFormat{.sampleRate = format.sampleRate()};
}

void MultimediaMicrophone::stop() {
  if (!m_source) return;
  deliver();
  const auto source = std::move(m_source);
  source->stop();
  const QByteArray rest = m_buffer->takeRest();
  if (!rest.isEmpty()) emit captured(rest);
}

void MultimediaMicrophone::deliver() {
  if (!m_input || !m_buffer) return;
  m_buffer->append(m_input->readAll());
  for (QByteArray buffer = m_buffer->take(); !buffer.isEmpty(); buffer = m_buffer->take()) emit captured(buffer);
}

}  // namespace varnel::platform
