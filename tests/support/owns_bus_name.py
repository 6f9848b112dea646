# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Owns a name on the session bus and then stops itself: a service that is there and never answers.

Usage: owns_bus_name.py NAME. Stopped by SIGSTOP, so end it with SIGKILL."""

import os
import signal
import sys

from gi.repository import Gio, GLib

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
reply = bus.call_sync(
    "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
    GLib.Variant("(su)", (sys.argv[1], 4)), None, Gio.DBusCallFlags.NONE, 5000, None)
if reply.unpack()[0] != 1:
    sys.exit("the name is taken: " + sys.argv[1])
os.kill(os.getpid(), signal.SIGSTOP)
