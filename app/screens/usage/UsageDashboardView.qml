// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// The last usage report.
Sheet {
    id: root

    required property UsageDashboardState usage

    title: qsTr("Usage")
    doneText: qsTr("Done")
    contentHeight: usage.available ? column.height : 240

    EmptyState {
        anchors.centerIn: parent
        width: Math.min(360, parent.width)
        visible: !root.usage.available
        symbol: "chart.bar"
        title: qsTr("Usage unavailable")
    }
    Flickable {
        anchors.fill: parent
        visible: root.usage.available
        contentWidth: width
        contentHeight: column.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: FadingScrollBar {}

        Column {
            id: column

            width: parent.width
            spacing: Theme.margin
            bottomPadding: Theme.unit

            Rectangle {
                width: column.width
                height: summary.height + 2 * Theme.cardPadding
                visible: summary.height > 0
                radius: Theme.cardRadius
                color: Theme.surface

                UsageLimitsSummary {
                    id: summary

                    x: Theme.cardPadding
                    y: Theme.cardPadding
                    width: parent.width - 2 * Theme.cardPadding
                    limits: root.usage.limits
                }
            }
            FormSection {
                width: column.width
                visible: root.usage.hasDays
                title: qsTr("Daily tokens")

                Item {
                    width: column.width
                    height: chart.height + 2 * Theme.cardPadding

                    UsageChart {
                        id: chart

                        x: Theme.cardPadding
                        y: Theme.cardPadding
                        width: parent.width - 2 * Theme.cardPadding
                        height: 190
                        usage: root.usage
                    }
                }
            }
            Grid {
                width: column.width
                columns: 2
                spacing: Theme.cardPadding

                Repeater {
                    model: root.usage.metrics

                    Rectangle {
                        id: tile

                        required property string title
                        required property string value

                        width: (column.width - Theme.cardPadding) / 2
                        height: figures.height + 2 * Theme.cardPadding
                        radius: Theme.cardRadius
                        color: Theme.veil(Theme.secondary, 8)
                        Accessible.role: Accessible.StaticText
                        Accessible.name: title + ": " + value

                        Column {
                            id: figures

                            x: Theme.cardPadding
                            y: Theme.cardPadding
                            width: parent.width - 2 * Theme.cardPadding
                            spacing: 2

                            Text {
                                width: parent.width
                                text: tile.title
                                textFormat: Text.PlainText
                                font: Theme.caption
                                color: Theme.secondary
                                wrapMode: Text.Wrap
                                Accessible.ignored: true
                            }
                            Text {
                                width: parent.width
                                text: tile.value
                                textFormat: Text.PlainText
                                font: Theme.headline
                                color: Theme.text
                                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                                Accessible.ignored: true
                            }
                        }
                    }
                }
            }
            FormSection {
                width: column.width
                visible: root.usage.hasBreakdown
                title: qsTr("Conversation breakdown")

                Repeater {
                    model: root.usage.breakdown

                    FormRow {
                        required property string title
                        required value

                        label: title
                    }
                }
            }
            Text {
                width: column.width
                text: root.usage.updated
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
}
