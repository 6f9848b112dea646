// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// What a row offers under a swipe and in its menu.
T.Action {
    required property string symbol
    property string tone: "accent"
}
