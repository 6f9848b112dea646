// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// A page over the page: it slides up from the bottom of a phone and stands as a card in the middle of a large window.
/// Closed by its cross, or the word that stands in its place, by Escape and by a press outside.
T.Dialog {
    id: root

    property string doneText: ""
    /// The word stands on the left, where cancelling does.
    property bool doneLeading: false
    /// On a large window it is as tall as that allows, whatever is in it.
    property bool tall: false
    readonly property bool wide: parent !== null && parent.width >= Theme.wideFrom
    readonly property real restingY: wide ? (parent.height - height) / 2 : parent ? parent.height - height : 0
    property real slide: 0

    x: parent ? (parent.width - width) / 2 : 0
    y: restingY + slide
    width: wide ? 480 : parent ? parent.width : 0
    height: wide ? Math.min(tall ? 720 : implicitHeight, parent.height - 2 * Theme.margin) : parent ? parent.height - 3 * Theme.unit : 0
    implicitHeight: implicitHeaderHeight + contentHeight + topPadding + bottomPadding
    padding: Theme.margin
    topPadding: Theme.unit
    modal: true
    focus: true

    // qmllint disable deferred-property-id
    header: Item {
        implicitHeight: Theme.touchTarget + Theme.unit

        Text {
            anchors.left: root.doneLeading ? doneButton.right : parent.left
            anchors.right: root.doneLeading ? parent.right : root.doneText ? doneButton.left : closeButton.left
            anchors.leftMargin: root.doneLeading ? Theme.unit : Theme.margin
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            text: root.title
            textFormat: Text.PlainText
            font: Theme.headline
            color: Theme.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        SymbolButton {
            id: closeButton

            anchors.right: parent.right
            anchors.rightMargin: Theme.half
            anchors.verticalCenter: parent.verticalCenter
            visible: !root.doneText
            symbol: "xmark"
            label: qsTr("Close")
            tone: Theme.secondary
            onClicked: root.reject()
        }
        TextButton {
            id: doneButton

            anchors.left: root.doneLeading ? parent.left : undefined
            anchors.right: root.doneLeading ? undefined : parent.right
            anchors.margins: Theme.half
            anchors.verticalCenter: parent.verticalCenter
            visible: root.doneText.length > 0
            text: root.doneText
            onClicked: root.reject()
        }
    }
    // qmllint enable deferred-property-id
    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.page

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Theme.cardRadius
            visible: !root.wide
            color: Theme.page
        }
    }
    T.Overlay.modal: Rectangle {
        color: Theme.dim
    }
    enter: Transition {
        NumberAnimation {
            property: "slide"
            from: Theme.reducedMotion ? 0 : root.height
            to: 0
            duration: Theme.pushDuration
            easing.type: Easing.OutCubic
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "slide"
            from: 0
            to: Theme.reducedMotion ? 0 : root.height
            duration: Theme.pushDuration
            easing.type: Easing.InCubic
        }
    }
}
