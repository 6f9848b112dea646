// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
#include "bench/markdown_peers.h"

#include <QtCore/QTextStream>
#include <QtGui/QTextDocument>

#include <dlfcn.h>
#include <md4c.h>

#include <filesystem>
#include <stdexcept>

#include "bench/corpus_file.h"
#include "bench/process.h"

namespace varnel::bench {

void parseWithMd4c(std::string_view text, bool github) {
  MD_PARSER parser{};
  parser.flags = github ? MD_DIALECT_GITHUB : MD_DIALECT_COMMONMARK;
  parser.enter_block = parser.leave_block = [](MD_BLOCKTYPE, void*, void*) { return 0; };
  parser.enter_span = parser.leave_span = [](MD_SPANTYPE, void*, void*) { return 0; };
  parser.text = [](MD_TEXTTYPE, const MD_CHAR*, MD_SIZE, void*) { return 0; };
  md_parse(text.data(), static_cast<MD_SIZE>(text.size()), &parser, nullptr);
}

struct Cmark::Library {
  void* (*newParser)(int options) = nullptr;
  void (*feed)(void* parser, const char* text, std::size_t size) = nullptr;
  void* (*finish)(void* parser) = nullptr;
  void (*freeParser)(void* parser) = nullptr;
  void (*freeNode)(void* node) = nullptr;
};

Cmark::Cmark(const char* library) {
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) throw std::runtime_error(dlerror());
  Library found;
  const auto take = [handle](const char* name, auto& function) {
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(handle, name));
    if (function == nullptr) throw std::runtime_error(dlerror());
  };
  take("cmark_parser_new", found.newParser);
  take("cmark_parser_feed", found.feed);
  take("cmark_parser_finish", found.finish);
  take("cmark_parser_free", found.freeParser);
  take("cmark_node_free", found.freeNode);
  m_library = std::make_shared<const Library>(found);
}

void Cmark::parseBlocks(std::string_view text) const {
  void* parser = m_library->newParser(0);
  m_library->feed(parser, text.data(), text.size());
  m_library->freeParser(parser);
}

void Cmark::parse(std::string_view text) const {
  void* parser = m_library->newParser(0);
  m_library->feed(parser, text.data(), text.size());
  m_library->freeNode(m_library->finish(parser));
  m_library->freeParser(parser);
}

void parseWithQt(std::string_view text) {
  QTextDocument document;
  document.setMarkdown(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

std::expected<std::map<std::string, double>, std::string> ratesInNode(const std::string& file, int rounds) {
  const std::string folder = programFolder() + "/node";
  if (!std::filesystem::exists(folder + "/node_modules/markdown-it")) {
    const auto installed = outputOf(
        QStringLiteral("npm"), {QStringLiteral("install"), QStringLiteral("--prefix"), QString::fromStdString(folder),
                                QStringLiteral("--no-save"), QStringLiteral("--no-audit"), QStringLiteral("--no-fund"),
                                QStringLiteral("marked@18.2.1"), QStringLiteral("markdown-it@15.0.3")});
    if (!installed) return std::unexpected(installed.error());
  }
  auto output = outputOf(QStringLiteral("node"), {QString::fromStdString(folder + "/markdown_node.mjs"),
                                                  QString::fromStdString(file), QString::number(rounds)});
  if (!output) return std::unexpected(output.error());
  std::map<std::string, double> rates;
  QTextStream lines(&*output);
  for (QString line; lines.readLineInto(&line);) {
    rates[line.section(u'\t', 0, 0).toStdString()] = line.section(u'\t', 1).toDouble();
  }
  return rates;
}

}  // namespace varnel::bench
