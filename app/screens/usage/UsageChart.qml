// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// A bar a day, the last one filled. What a bar is worth stands above the chart while it is touched, hovered or
/// focused; many bars scroll, the latest in view first.
Item {
    id: root

    required property UsageDashboardState usage
    readonly property real axisWidth: axisMetrics.width + Theme.unit
    readonly property real footHeight: 24
    readonly property real headHeight: 24
    readonly property real plotHeight: height - footHeight - headHeight
    property string touched: ""

    implicitHeight: 190
    Accessible.role: Accessible.Chart
    Accessible.name: qsTr("Daily token usage chart")

    TextMetrics {
        id: axisMetrics

        font: Theme.caption
        text: root.usage.axisEnd
    }
    Text {
        anchors.right: parent.right
        text: root.touched
        textFormat: Text.PlainText
        font: Theme.captionBold
        color: Theme.text
        Accessible.ignored: true
    }
    Repeater {
        model: root.usage.ticks

        Item {
            id: tick

            required property string label
            required property real share

            y: root.headHeight + root.plotHeight * (1 - share)
            width: root.width

            Text {
                anchors.verticalCenter: parent.verticalCenter
                width: root.axisWidth - Theme.unit
                text: tick.label
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
            Rectangle {
                x: root.axisWidth
                width: root.width - x
                height: 1
                color: Theme.hairline
            }
        }
    }
    ListView {
        id: bars

        // Not by `count`, which the list tells of while it lays out what this widens.
        readonly property real slot: Math.max(36, width / Math.max(1, root.usage.dayCount))

        x: root.axisWidth
        width: root.width - x
        height: root.height
        orientation: ListView.Horizontal
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        model: root.usage.bars
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Days")
        Component.onCompleted: positionViewAtEnd()
        onCountChanged: positionViewAtEnd()

        delegate: T.ItemDelegate {
            id: bar

            required property int index
            required property string day
            required property string tokensText
            required property real share
            required property bool latest
            required property string spoken
            readonly property bool pointed: hovered || down || visualFocus || activeFocus

            width: bars.slot
            height: bars.height
            focusPolicy: Qt.StrongFocus
            hoverEnabled: true
            Accessible.role: Accessible.ListItem
            Accessible.name: spoken
            onPointedChanged: root.touched = pointed ? day + ": " + tokensText : ""

            Rectangle {
                x: (parent.width - width) / 2
                y: root.headHeight + root.plotHeight - height
                width: Math.min(32, parent.width - Theme.unit)
                height: Math.max(bar.share > 0 ? 2 : 0, root.plotHeight * bar.share)
                radius: Math.min(4, height / 2)
                color: bar.latest || bar.pointed ? Theme.accent : Theme.tinted(Theme.accent, 45)
            }
            Text {
                // The last one ends with its bar: there is no room behind it.
                x: bar.index === bars.count - 1 ? Math.min((parent.width - width) / 2, parent.width - width) : (parent.width - width) / 2
                anchors.bottom: parent.bottom
                // Every other day where they stand close; the others are told when touched.
                visible: implicitWidth <= bars.slot || (bars.count - 1 - bar.index) % Math.ceil(implicitWidth / bars.slot) === 0
                text: bar.day
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                horizontalAlignment: Text.AlignHCenter
                Accessible.ignored: true
            }
        }
    }
}
