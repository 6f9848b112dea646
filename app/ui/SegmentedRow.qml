// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// A row of a form with few choices that all stand there; the arrow keys move between them.
FocusScope {
    id: root

    required property string label
    required property var choices
    required property int currentIndex

    signal picked(index: int)

    width: parent ? parent.width : 0
    implicitHeight: Math.max(words.height, track.height) + 2 * Theme.unit
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    RowHairline {}
    Text {
        id: words

        anchors.left: parent.left
        anchors.leftMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - track.width - 3 * Theme.cardPadding
        text: root.label
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    Rectangle {
        id: track

        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: segments.width
        height: segments.height
        radius: Theme.groupRadius
        color: Theme.page

        Row {
            id: segments

            Repeater {
                id: repeater

                model: root.choices

                T.RadioButton {
                    id: segment

                    required property int index
                    required property string modelData
                    readonly property bool chosen: index === root.currentIndex

                    width: Math.max(72, title.implicitWidth + 2 * Theme.margin)
                    height: Theme.touchTarget
                    focusPolicy: Qt.StrongFocus
                    autoExclusive: false
                    checked: chosen
                    text: modelData
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: text
                    Accessible.checkable: true
                    Accessible.checked: chosen
                    Accessible.onPressAction: clicked()
                    Accessible.onToggleAction: clicked()
                    Keys.onReturnPressed: segment.clicked()
                    Keys.onLeftPressed: repeater.itemAt(Math.max(0, index - 1)).forceActiveFocus(Qt.TabFocusReason)
                    Keys.onRightPressed: repeater.itemAt(Math.min(repeater.count - 1, index + 1)).forceActiveFocus(Qt.TabFocusReason)
                    onClicked: root.picked(index)

                    background: Item {
                        Rectangle {
                            anchors.fill: parent
                            anchors.margins: 3
                            radius: Theme.codeRadius
                            color: segment.chosen ? Theme.accent : "transparent"
                            border.width: segment.visualFocus ? 2 : 0
                            border.color: segment.chosen ? Theme.text : Theme.accent
                        }
                    }
                    // qmllint disable deferred-property-id
                    contentItem: Text {
                        id: title

                        text: segment.text
                        textFormat: Text.PlainText
                        font: Theme.callout
                        color: segment.chosen ? Theme.accentText : Theme.text
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        Accessible.ignored: true
                    }
                    // qmllint enable deferred-property-id
                }
            }
        }
    }
}
