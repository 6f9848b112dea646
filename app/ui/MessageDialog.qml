// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls

/// A sentence that is to be read, and the button that says so.
Dialog {
    id: root

    property string message

    function tell(text: string): void {
        message = text;
        open();
    }

    Flickable {
        id: reading

        function scrollBy(distance: real): void {
            contentY = Math.max(0, Math.min(contentY + distance, contentHeight - height));
        }

        anchors.fill: parent
        implicitHeight: words.height
        contentWidth: width
        contentHeight: words.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        Label {
            id: words

            width: reading.width
            text: root.message
            lineHeight: Theme.readingLeading
        }
    }
    // qmllint disable deferred-property-id
    footer: Item {
        implicitHeight: okButton.height + 20

        Button {
            id: okButton

            anchors.right: parent.right
            anchors.rightMargin: 20
            highlighted: true
            focus: true
            text: qsTr("OK")
            Keys.onUpPressed: reading.scrollBy(-Theme.touchTarget)
            Keys.onDownPressed: reading.scrollBy(Theme.touchTarget)
            onClicked: root.accept()
        }
    }
    // qmllint enable deferred-property-id
}
