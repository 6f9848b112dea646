// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui
import Varnel.Screens

/// What stands above the first row: the plan, and a card for each request that waits for an answer.
Column {
    id: root

    required property SessionViewState session
    /// Where the top of the transcript's view is, in this item; cards that move under a finger notice by it.
    required property real viewTop

    /// Something in it is about to be folded or unfolded.
    signal aboutToUnfold

    function firstCardTop(): real {
        return cards.itemAt(0)?.y ?? 0;
    }
    /// Whether there are cards and none is seen.
    function cardsOutOfView(from: real, height: real): bool {
        for (let i = 0; i < cards.count; ++i) {
            const card = cards.itemAt(i);
            if (card && card.y < from + height - Theme.touchTarget && card.y + card.height > from + Theme.touchTarget)
                return false;
        }
        return cards.count > 0;
    }

    Component.onCompleted: ReadingOrder.placeFirst(root)
    topPadding: Theme.margin
    bottomPadding: cards.count > 0 || plan.visible ? Theme.unit : 0
    spacing: Theme.unit

    PlanCard {
        id: plan

        width: root.width
        visible: root.session.plan.present
        plan: root.session.plan
        onAboutToUnfold: root.aboutToUnfold()
    }
    Repeater {
        id: cards

        model: root.session.requests

        RequestCard {
            id: card

            width: root.width
            place: card.y - root.viewTop
            onAboutToUnfold: root.aboutToUnfold()
        }
    }
}
