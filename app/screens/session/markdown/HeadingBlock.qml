// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

RichText {
    id: root

    required property int level

    font: level === 1 ? Theme.title2 : level === 2 ? Theme.title3 : Theme.headline
    Accessible.role: Accessible.Heading
}
