import QtQuick
import Varnic.NotePage
import Varnic.Theme as Theme

/// Has an AI summarise the call, and says where its words go.
Column {
    id: controls

    required property SummaryModel summary

    spacing: 8

    Flow {
        spacing: Theme.Space.s
        width: parent.width

        Row {
            height: ask.implicitHeight
            spacing: 5
            visible: controls.summary.credit !== ""

            Theme.Symbol {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.inkFaint
                name: "lock.fill"
                size: 10
            }

            Theme.Label {
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.inkSoft
                elide: Text.ElideRight
                font: Theme.Typo.caption
                text: controls.summary.credit
                textFormat: Text.PlainText
                width: Math.min(implicitWidth, controls.width - 20)
            }
        }

        Row {
            Accessible.name: controls.summary.asking
            Accessible.role: Accessible.StaticText
            height: ask.implicitHeight
            spacing: Theme.Space.s
            visible: controls.summary.asking !== ""

            Theme.Spinner {
                Accessible.ignored: true
                anchors.verticalCenter: parent.verticalCenter
                size: 14
            }

            Text {
                Accessible.ignored: true
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.Palette.inkSoft
                elide: Text.ElideRight
                font: Theme.Typo.ui
                text: controls.summary.asking
                textFormat: Text.PlainText
                width: Math.min(implicitWidth, controls.width - 30)
            }
        }

        Theme.QuietButton {
            id: ask

            help: controls.summary.askHelp
            symbol: "sparkles"
            text: controls.summary.askTitle
            visible: controls.summary.asking === ""
            width: Math.min(implicitWidth, controls.width)

            onClicked: controls.summary.summarise()
        }

        Theme.QuietButton {
            help: controls.summary.localHelp
            text: "Use Varnic’s"
            visible: controls.summary.credit !== "" && controls.summary.asking === ""

            onClicked: controls.summary.useLocalSummary()
        }
    }

    Theme.Label {
        color: Theme.Palette.inkFaint
        font: Theme.Typo.caption
        text: controls.summary.privacy
        textFormat: Text.PlainText
        width: parent.width
        wrapMode: Text.Wrap
    }

    Row {
        spacing: 5
        visible: controls.summary.aiError !== ""
        width: parent.width

        Theme.Symbol {
            id: sign

            color: Theme.Palette.warn
            name: "exclamationmark.circle"
            size: 12
            y: 1
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.AlertMessage
            color: Theme.Palette.inkSoft
            font: Theme.Typo.caption
            text: controls.summary.aiError
            textFormat: Text.PlainText
            width: parent.width - sign.width - parent.spacing
            wrapMode: Text.Wrap
        }
    }
}
