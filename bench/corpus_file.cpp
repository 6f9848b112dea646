// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/corpus_file.h"

#include <QtCore/QCryptographicHash>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace varnel::bench {

std::string programFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::string corpusPath(std::string_view file) {
  return programFolder() + "/corpus/" + std::string(file);
}

std::string loadCorpus(std::string_view file, std::string_view sha256) {
  std::string text = readFile(corpusPath(file));
  const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
  const auto sum = QCryptographicHash::hash(bytes.toByteArray(), QCryptographicHash::Sha256).toHex();
  if (sum.toStdString() != sha256) {
    throw std::runtime_error(std::string(file) + " is not the corpus: its SHA-256 differs");
  }
  return text;
}

std::string readFile(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  std::string text(in ? std::filesystem::file_size(file) : 0, '\0');
  if (!in.read(text.data(), static_cast<std::streamsize>(text.size()))) {
    throw std::runtime_error(file + " cannot be read");
  }
  return text;
}

}  // namespace varnel::bench
