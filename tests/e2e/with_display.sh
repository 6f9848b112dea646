#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
#
# usage: with_display.sh SECONDS COMMAND...
# Runs the command on an X server and a session bus of its own, with XDG directories that go away with it, for SECONDS
# at most. Ends with the command's status, 124 when the time was over.

set -euo pipefail

seconds=$1
shift
scratch=$(mktemp -d)
server=""
finish() {
  [[ -z $server ]] || kill "$server" 2>/dev/null || true
  [[ -z $server ]] || wait "$server" 2>/dev/null || true
  rm -rf "$scratch"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

mkdir -m 700 "$scratch/run" "$scratch/home"
mkfifo "$scratch/display"
exec {display}<>"$scratch/display"
Xvfb -displayfd "$display" -screen 0 1300x860x24 -nolisten tcp >"$scratch/xvfb.log" 2>&1 &
server=$!
# The server writes its number once it is ready to be used.
read -r -t 20 -u "$display" number || {
  cat "$scratch/xvfb.log" >&2
  printf '%s\n' "with_display.sh: Xvfb did not start" >&2
  exit 1
}

unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS
export DISPLAY=":$number" HOME="$scratch/home" XDG_RUNTIME_DIR="$scratch/run" TMPDIR="$scratch"
export XDG_DATA_HOME="$scratch/home/data" XDG_CONFIG_HOME="$scratch/home/config" XDG_CACHE_HOME="$scratch/home/cache"
export XDG_STATE_HOME="$scratch/home/state"
export QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_SCALE_FACTOR=1 LC_ALL=C.UTF-8
# The daemons of the bus inherit its output and say more than anybody wants to read; only the command keeps ours.
exec {out}>&1 {err}>&2
status=0
# shellcheck disable=SC2016
timeout --kill-after=5 "$seconds" dbus-run-session -- \
  bash -c 'out=$1 err=$2; shift 2; exec "$@" >&"$out" 2>&"$err" {out}>&- {err}>&-' bash "$out" "$err" "$@" \
  >"$scratch/bus.log" 2>&1 || status=$?
exit "$status"
