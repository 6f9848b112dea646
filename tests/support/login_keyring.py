# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Handles the login keyring of the gnome-keyring on the session bus without a prompt.

Usage: login_keyring.py lock | unlock | create-blank
unlock uses the password "pw"; create-blank makes it with an empty one, as the default keyring."""

import sys

from gi.repository import Gio, GLib

SERVICE = "/org/freedesktop/secrets"
KEYRING = SERVICE + "/collection/login"
STANDARD = "org.freedesktop.Secret.Service"
INTERNAL = "org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface"


def call(interface, method, signature, *arguments):
    return bus.call_sync("org.freedesktop.secrets", SERVICE, interface, method, GLib.Variant(signature, arguments),
                         None, Gio.DBusCallFlags.NONE, 5000, None).unpack()


def secret(text):
    session = call(STANDARD, "OpenSession", "(sv)", "plain", GLib.Variant("s", ""))[1]
    return (session, b"", text, "text/plain")


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
match sys.argv[1]:
    case "lock":
        call(STANDARD, "Lock", "(ao)", [KEYRING])
    case "unlock":
        call(INTERNAL, "UnlockWithMasterPassword", "(o(oayays))", KEYRING, secret(b"pw"))
    case "create-blank":
        label = {"org.freedesktop.Secret.Collection.Label": GLib.Variant("s", "login")}
        made = call(INTERNAL, "CreateWithMasterPassword", "(a{sv}(oayays))", label, secret(b""))[0]
        call(STANDARD, "SetAlias", "(so)", "default", made)
        if made != KEYRING:
            sys.exit("made " + made)
    case _:
        sys.exit(__doc__)
