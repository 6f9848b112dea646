#!/bin/sh
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
#
# with_keyring.sh MODE COMMAND...: runs a command on a session bus of its own, with its own XDG directories and
# without a display, and ends all that it started. MODE says what keeps secrets there:
#   unlocked  gnome-keyring with an open keyring (password "pw")
#   blank     the same with an empty password, so that it opens without a question
#   fresh     gnome-keyring that nobody has logged in to: no keyring yet
#   hanging   something that owns the service's name and never answers
#   absent    nothing: a bus without services
#   nobus     not even a bus
# Whoever asks for a prompt in a mode with gnome-keyring waits for ever, since the prompter there never answers.
set -eu
mode=$1
shift
trap 'exit 143' TERM
trap 'exit 130' INT
here=$(cd "$(dirname "$0")" && pwd)

if [ -z "${VARNEL_KEYRING_SCRATCH:-}" ]; then
  VARNEL_KEYRING_SCRATCH=$(mktemp -d)
  export VARNEL_KEYRING_SCRATCH
  trap 'rm -rf "$VARNEL_KEYRING_SCRATCH"' EXIT
  unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS GNOME_KEYRING_CONTROL
  for kind in DATA CONFIG CACHE; do
    mkdir "$VARNEL_KEYRING_SCRATCH/$kind"
    export "XDG_${kind}_HOME=$VARNEL_KEYRING_SCRATCH/$kind"
  done
  mkdir -m 700 "$VARNEL_KEYRING_SCRATCH/run"
  export XDG_RUNTIME_DIR="$VARNEL_KEYRING_SCRATCH/run"
  if [ "$mode" = nobus ]; then
    "$@"
    exit
  fi
  cat >"$VARNEL_KEYRING_SCRATCH/bus.conf" <<CONF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=$XDG_RUNTIME_DIR</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
CONF
  dbus-run-session --config-file="$VARNEL_KEYRING_SCRATCH/bus.conf" -- "$0" "$mode" "$@"
  exit
fi

started=
trap 'for pid in $started; do kill -KILL "$pid" 2>/dev/null || true; done' EXIT

owner_of() {
  gdbus wait --session --timeout 10 "$1"
}
own_and_hang() {
  /usr/bin/python3 "$here/owns_bus_name.py" "$1" &
  started="$started $!"
  owner_of "$1"
}
keyring() {
  own_and_hang org.gnome.keyring.SystemPrompter
  printf pw | gnome-keyring-daemon --foreground --components=secrets "$@" >/dev/null 2>&1 &
  started="$started $!"
  owner_of org.freedesktop.secrets
}

case $mode in
  unlocked) keyring --unlock ;;
  blank)
    keyring
    /usr/bin/python3 "$here/login_keyring.py" create-blank
    ;;
  fresh) keyring ;;
  hanging) own_and_hang org.freedesktop.secrets ;;
  absent) ;;
  *)
    echo "with_keyring.sh: unknown mode $mode" >&2
    exit 2
    ;;
esac
"$@"
