import QtQuick
import QtQuick.Layouts
import Varnic.Study
import Varnic.Theme as Theme

/// Asks the due cards of a deck, one at a time.
Theme.Sheet {
    id: sheet

    readonly property StudyModel study: StudyModel {
    }

    /// The keyboard goes to the card, or to the way out when there is none.
    function takeFocus() {
        if (study.hasCard) {
            card.forceActiveFocus();
        } else {
            head.focusDone();
        }
    }

    height: Math.min(520, (parent ? parent.height : 0) - 2 * Theme.Space.xl)
    name: "Flashcards: " + study.title
    objectName: "studySheet"
    width: 600

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.Space.l

        Keys.onPressed: event => event.accepted = sheet.study.press(event.key, event.modifiers)

        StudyHead {
            id: head

            Layout.fillWidth: true
            study: sheet.study
        }

        StudyCard {
            id: card

            Layout.fillHeight: true
            Layout.fillWidth: true
            focus: true
            study: sheet.study
            visible: sheet.study.hasCard
        }

        Item {
            Layout.alignment: Qt.AlignHCenter
            implicitHeight: 32
            implicitWidth: grades.implicitWidth
            visible: sheet.study.hasCard

            Theme.InkButton {
                anchors.centerIn: parent
                text: "Show Answer"
                visible: !sheet.study.flipped

                onClicked: sheet.study.flip()
            }

            Row {
                id: grades

                anchors.centerIn: parent
                spacing: Theme.Space.m
                visible: sheet.study.flipped

                GradeButton {
                    digit: "1"
                    text: "Again"

                    onClicked: sheet.study.grade(StudyModel.Again)
                }

                GradeButton {
                    digit: "2"
                    text: "Good"

                    onClicked: sheet.study.grade(StudyModel.Good)
                }

                GradeButton {
                    digit: "3"
                    text: "Easy"

                    onClicked: sheet.study.grade(StudyModel.Easy)
                }
            }
        }

        CaughtUp {
            Layout.fillHeight: true
            Layout.fillWidth: true
            study: sheet.study
            visible: !sheet.study.hasCard
        }
    }

    // The button that was pressed is gone with its side of the card.
    Connections {
        function onChanged() {
            sheet.takeFocus();
        }

        target: sheet.study
    }

    // Keys that are pressed while the sheet comes in count.
    onAboutToShow: takeFocus()
    onClosed: study.close()
}
