// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// A row of a form with a choice; a press opens the list of choices in a sheet.
FormButton {
    id: root

    required property var choices
    required property int currentIndex
    property string placeholder: ""

    signal picked(index: int)

    tone: Theme.text
    opens: true
    value: choices[currentIndex] ?? placeholder
    onClicked: sheet.open()

    Sheet {
        id: sheet

        parent: T.Overlay.overlay
        title: root.text
        onOpened: {
            list.currentIndex = Math.max(0, root.currentIndex);
            list.forceActiveFocus(Qt.TabFocusReason);
        }

        ListView {
            id: list

            anchors.fill: parent
            implicitHeight: contentHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: true
            model: root.choices
            Accessible.role: Accessible.List
            Accessible.name: root.text
            T.ScrollBar.vertical: FadingScrollBar {}

            delegate: ChoiceRow {
                required property int index
                required property string modelData

                width: list.width
                text: modelData
                chosen: index === root.currentIndex
                firstRow: index === 0
                lastRow: index === list.count - 1
                onClicked: {
                    sheet.close();
                    root.picked(index);
                }
            }
        }
    }
}
