# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT

# g++ 12 destroys aggregate temporaries of a full expression with co_await twice and
# resumes frames it has freed; 13 is the first release that passes our shapes.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  message(FATAL_ERROR
    "g++ ${CMAKE_CXX_COMPILER_VERSION} miscompiles coroutines (temporaries in an expression with "
    "co_await are destroyed twice). Use clang 19, as `cmake --preset dev` does, or g++ 13 or newer.")
endif()

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(VARNEL_CCACHE ccache)
if(VARNEL_CCACHE)
  # The sloppiness is what lets ccache reuse objects built on a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${VARNEL_CCACHE})
endif()

# Every target of ours links this; it carries the warnings and nothing else.
add_library(varnel_warnings INTERFACE)
target_compile_options(varnel_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
  -Wno-c++98-compat
  # C++23 has them and libstdc++ 12's own headers use them; clang 19 still says so in pedantic mode.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-c++20-extensions>
  # A member left out of a designated initialiser takes the value that its declaration gives it: that is what records
  # are for.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-missing-designated-field-initializers>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-missing-field-initializers>
  $<$<BOOL:${VARNEL_WARNINGS_AS_ERRORS}>:-Werror>)

# varnel_library(NAME SOURCES ... LINK ...): one folder, one static library. Headers are included by their path
# from the top of the source tree, so that an include line names the folder it depends on.
function(varnel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK;LINK_PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE ${ARG_LINK_PRIVATE} varnel_warnings)
endfunction()
