import QtQuick
import Varnic.Study
import Varnic.Theme as Theme

/// A card that turns over: the question in front, the answer behind. What does not fit is scrolled to.
Item {
    id: card

    readonly property bool isBackShowing: turn.angle > 90
    readonly property StudyFace shownFace: isBackShowing ? back : front
    required property StudyModel study

    Accessible.focusable: true
    Accessible.name: study.spoken
    Accessible.role: Accessible.Button
    activeFocusOnTab: true
    objectName: "studyCard"

    Item {
        anchors.fill: parent

        transform: Rotation {
            id: turn

            angle: card.study.flipped ? 180 : 0
            origin.x: card.width / 2
            origin.y: card.height / 2

            axis {
                x: 0
                y: 1
                z: 0
            }
            Behavior on angle  {
                enabled: !Theme.Appearance.reduceMotion

                NumberAnimation {
                    duration: 450
                    easing.type: Theme.Motion.easing
                }
            }
        }

        StudyFace {
            id: front

            anchors.fill: parent
            tag: "Question"
            tint: Theme.Palette.you
            visible: !card.isBackShowing
            words: card.study.question
        }

        StudyFace {
            id: back

            anchors.fill: parent
            objectName: "answerFace"
            tag: "Answer"
            tint: Theme.Palette.them
            visible: card.isBackShowing
            words: card.study.answer

            transform: Rotation {
                angle: 180
                origin.x: back.width / 2
                origin.y: back.height / 2

                axis {
                    x: 0
                    y: 1
                    z: 0
                }
            }
        }
    }

    Keys.onDownPressed: shownFace.scrollBy(40)
    Keys.onUpPressed: shownFace.scrollBy(-40)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageDown || event.key === Qt.Key_PageUp) {
            shownFace.scrollBy(event.key === Qt.Key_PageDown ? height / 2 : -height / 2);
            event.accepted = true;
        } else {
            event.accepted = false;
        }
    }

    TapHandler {
        onTapped: card.study.flip()
    }
}
