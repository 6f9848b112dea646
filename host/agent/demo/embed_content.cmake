# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT

# Writes OUTPUT, a source file that holds every file of FILES (paths below DIRECTORY) as a text literal. Run by the
# build when one of them changes. Compilers promise 64 KiB for one literal, hence the limit.
set(source "// Made by embed_content.cmake.\n#include <array>\n\n#include \"host/agent/demo/content.h\"\n\n")
string(APPEND source "namespace varnel::agent::demo {\n\nstd::span<const ContentFile> contentFiles() {\n")
string(APPEND source "  using namespace std::string_view_literals;\n  static constexpr auto kFiles = std::to_array<ContentFile>({\n")
foreach(file IN LISTS FILES)
  file(READ "${DIRECTORY}/${file}" text)
  string(LENGTH "${text}" length)
  if(length GREATER 60000)
    message(FATAL_ERROR "${file} is too long for one text literal; split it")
  endif()
  string(APPEND source "      {\"${file}\"sv, R\"~embed~(${text})~embed~\"sv},\n")
endforeach()
string(APPEND source "  });\n  return kFiles;\n}\n\n}  // namespace varnel::agent::demo\n")
file(WRITE "${OUTPUT}" "${source}")
