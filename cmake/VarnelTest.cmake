# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT

# varnel_test(NAME SOURCES ... LINK ... LABEL unit|qml|loopback|e2e [TIMEOUT seconds] [RUN command ...]): one test
# program, run as a whole by ctest under a time-out, so that nothing can hang a run. RUN is put before the program
# (a private bus, a display).
function(varnel_test name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LINK;RUN;ARGS;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest GTest::gmock varnel_warnings)
  add_test(NAME ${name} COMMAND ${ARG_RUN} $<TARGET_FILE:${name}> ${ARG_ARGS})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS ${ARG_LABEL} ENVIRONMENT "${ARG_ENVIRONMENT}")
endfunction()
