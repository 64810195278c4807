import QtQuick
import Varnic.SettingsViews
import Varnic.Theme as Theme

/// What the program is, whose it is, and how to keep it up to date.
SettingsPage {
    id: page

    /// What is read in full: "", "licence" or "thirdParties".
    property string reading

    Column {
        spacing: Theme.Space.s
        topPadding: Theme.Space.m
        visible: page.reading === ""
        width: parent.width

        Theme.NibMark {
            anchors.horizontalCenter: parent.horizontalCenter
            paper: Theme.Palette.paper
            size: 56
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.Heading
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.Palette.ink
            font: Theme.Typo.system(24, Font.DemiBold)
            text: "Varnic"
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            color: Theme.Palette.inkSoft
            font: Theme.Typo.ui
            horizontalAlignment: Text.AlignHCenter
            text: AboutVarnic.slogan
            width: parent.width
            wrapMode: Text.Wrap
        }

        Text {
            Accessible.name: text
            Accessible.role: Accessible.StaticText
            anchors.horizontalCenter: parent.horizontalCenter
            color: Theme.Palette.inkFaint
            font: Theme.Typo.caption
            text: AboutVarnic.version
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.Space.l

            Theme.LinkButton {
                help: "Write to the support"
                text: AboutVarnic.supportAddress

                onClicked: AboutVarnic.writeToSupport()
            }

            Theme.LinkButton {
                text: "Licence"

                onClicked: page.reading = "licence"
            }

            Theme.LinkButton {
                text: "What comes from others"

                onClicked: page.reading = "thirdParties"
            }
        }
    }

    UpdateRows {
        visible: page.reading === "" && hasUpdater
    }

    LicencePage {
        spoken: page.reading === "thirdParties" ? AboutVarnic.plainThirdParties : text
        text: page.reading === "licence" ? AboutVarnic.licence : page.reading === "thirdParties" ? AboutVarnic.thirdParties : ""
        textFormat: page.reading === "thirdParties" ? Text.MarkdownText : Text.PlainText
        visible: page.reading !== ""

        onClosed: page.reading = ""
    }
}
