import QtQuick
import QtQuick.Templates as T
import Varnic.Theme as Theme

/// One side of a card.
Rectangle {
    id: face

    required property string tag
    required property color tint
    required property string words

    /// By so many points down the text, as far as it goes.
    function scrollBy(distance: real) {
        paper.contentY = Math.max(0, Math.min(paper.contentHeight - paper.height, paper.contentY + distance));
    }

    border.color: Qt.rgba(tint.r, tint.g, tint.b, 0.35)
    border.pixelAligned: false
    border.width: 1.5
    color: Theme.Palette.surface
    radius: Theme.Radius.card

    onWordsChanged: paper.contentY = 0

    Flickable {
        id: paper

        anchors.fill: parent
        anchors.margins: Theme.Space.xl
        anchors.rightMargin: Theme.Space.s
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        contentHeight: Math.max(height, side.implicitHeight)
        interactive: contentHeight > height

        T.ScrollBar.vertical: Theme.ThinScrollBar {
        }

        Column {
            id: side

            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.Space.m
            width: face.width - 2 * Theme.Space.xl

            Theme.Eyebrow {
                Accessible.ignored: true
                anchors.horizontalCenter: parent.horizontalCenter
                color: face.tint
                text: face.tag
            }

            Text {
                Accessible.ignored: true
                color: Theme.Palette.ink
                font: Theme.Typo.system(22, Font.Normal)
                horizontalAlignment: Text.AlignHCenter
                text: face.words
                textFormat: Text.PlainText
                width: parent.width
                wrapMode: Text.Wrap
            }
        }
    }
}
