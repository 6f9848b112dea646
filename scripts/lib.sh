# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# What the scripts share. Source it first; it leaves the shell strict and in the root of the repository.

set -euo pipefail

VARNEL_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
# The name under which messages appear: the script's path in the tree.
VARNEL_SCRIPT=$(realpath --relative-to="$VARNEL_ROOT" "$0")
readonly VARNEL_ROOT VARNEL_SCRIPT
cd "$VARNEL_ROOT"

say() {
  printf '%s\n' "$*"
}

fail() {
  printf '%s: %s\n' "$VARNEL_SCRIPT" "$*" >&2
  exit 1
}

# usage_fail TEXT: the arguments make no sense; exit 2 tells that from a red result.
usage_fail() {
  printf '%s\n' "$*" >&2
  exit 2
}

# need PROGRAM...: a missing tool is a failure that names the cure, never a check passed over.
need() {
  local tool
  for tool in "$@"; do
    command -v "$tool" >/dev/null || fail "$tool is missing; scripts/setup installs it"
  done
}

build_dir() {
  printf '%s/build/%s\n' "$VARNEL_ROOT" "$1"
}

jobs_allowed() {
  printf '%s\n' "${VARNEL_JOBS:-$(nproc)}"
}

# configure PRESET [CMAKE ARGUMENT...]: quiet unless it fails.
configure() {
  local preset=$1 log
  shift
  need cmake ninja clang++-19
  log=$(mktemp)
  if ! cmake --preset "$preset" "$@" </dev/null >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "preset $preset cannot be configured (the reason stands above)"
  fi
  rm -f "$log"
}

# build PRESET [TARGET...]: everything when no target is named.
build() {
  local preset=$1
  shift
  local targets=()
  [[ $# -eq 0 ]] || targets=(--target "$@")
  cmake --build "$(build_dir "$preset")" --parallel "$(jobs_allowed)" "${targets[@]}" </dev/null ||
    fail "preset $preset does not build"
}

configure_and_build() {
  local preset=$1
  shift
  say "-- building preset $preset"
  configure "$preset"
  build "$preset" "$@"
}

test_results() {
  printf '%s/test-results.xml\n' "$(build_dir "$1")"
}

# run_tests PRESET [CTEST ARGUMENT...]: returns ctest's own status; the results stay in the build folder for
# scripts/checks/count_tests.py. The whole output of a test is kept, because its last lines hold the counts.
run_tests() {
  local preset=$1
  shift
  rm -f "$(test_results "$preset")"
  ctest --preset "$preset" --parallel "${VARNEL_TEST_JOBS:-2}" --output-junit "$(test_results "$preset")" \
    --test-output-size-passed 4000000 --test-output-size-failed 4000000 "$@" </dev/null
}

# fuzz SECONDS: every harness on its corpus. What it finds stays under build/, never in the tree.
fuzz() {
  local seconds=$1 harness name found=0
  for harness in "$(build_dir fuzz)"/fuzz/*; do
    [[ -f $harness && -x $harness ]] || continue
    found=1
    name=$(basename "$harness")
    fuzz_one "$harness" "$name" "$seconds" || return 1
  done
  [[ $found -eq 1 ]] || fail "there is no harness in build/fuzz/fuzz"
}

fuzz_one() {
  local harness=$1 name=$2 seconds=$3 work log runs
  local corpus=fuzz/corpus/$name dictionary=fuzz/dictionaries/$name.dict options=()
  [[ -n $(ls -A "$corpus" 2>/dev/null) ]] || fail "$name has no seeds in $corpus"
  [[ ! -f $dictionary ]] || options+=("-dict=$dictionary")
  work=$(build_dir fuzz)/work/$name
  log=$work/log
  mkdir -p "$work/found" "$work/artifacts"
  if ! "$harness" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=4096 -print_final_stats=1 \
    -artifact_prefix="$work/artifacts/" "${options[@]}" "$work/found" "$corpus" </dev/null >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    say "fuzz $name: FAILED; the input is in ${work#"$VARNEL_ROOT"/}/artifacts"
    return 1
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  [[ ${runs:-0} -gt 0 ]] || fail "$name ended without running anything; see ${log#"$VARNEL_ROOT"/}"
  say "fuzz $name: clean, $runs inputs in $seconds s"
}
