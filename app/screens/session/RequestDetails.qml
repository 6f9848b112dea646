// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The whole request, folded until it is asked for: in words what would be done, the changes to files, and everything
/// the agent sent.
Column {
    id: root

    required property PendingRequestCardState card

    signal aboutToUnfold

    spacing: Theme.unit

    Disclosure {
        x: -Theme.groupPadding
        width: root.width + 2 * Theme.groupPadding
        symbol: "doc.text"
        label: qsTr("Full request details")
        expanded: root.card.showingDetail
        onClicked: {
            root.aboutToUnfold();
            root.card.showingDetail = !root.card.showingDetail;
        }
    }
    Repeater {
        model: root.card.showingDetail ? root.card.facts : []

        Column {
            id: fact

            required property var modelData

            width: root.width
            spacing: 2

            Label {
                width: fact.width
                text: fact.modelData.label
                font: Theme.captionBold
                color: Theme.secondary
            }
            Label {
                width: fact.width
                text: fact.modelData.text
                font: fact.modelData.verbatim ? Theme.code : Theme.body
                wrapMode: fact.modelData.verbatim ? Text.WrapAnywhere : Text.Wrap
                lineHeight: fact.modelData.verbatim ? 1 : Theme.readingLeading
            }
        }
    }
    LedgerText {
        visible: root.card.showingDetail && root.card.diff.length > 0
        width: root.width
        maximumHeight: Infinity
        text: visible ? diffStyle.sheet + root.card.diff : ""
        textFormat: TextEdit.RichText
        wrapMode: TextEdit.NoWrap
    }
    LedgerText {
        visible: root.card.showingDetail
        width: root.width
        maximumHeight: Infinity
        text: visible ? root.card.details : ""
    }
    DiffStyle {
        id: diffStyle
    }
}
