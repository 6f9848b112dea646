// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

/// The colours of the classes that a diff text uses. The signs in front of the lines say the same.
QtObject {
    readonly property string sheet: "<style>p{margin:0;white-space:pre}p.file{font-weight:600}p.heading{color:" + Theme.secondary + "}p.added{color:" + Theme.green + ";background-color:" + Theme.tinted(Theme.green, 8) + "}p.removed{color:" + Theme.red + ";background-color:" + Theme.tinted(Theme.red, 8) + "}</style>"
}
