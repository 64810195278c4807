#include "Varnic/Views/Program/QuitDialog.h"

#include <QCoro/QCoroSignal>
#include <QMessageBox>
#include <QPushButton>

#include <map>

namespace varnic::QuitDialog {

QCoro::Task<QuitQuestion::Answer> ask(QWindow* window, QuitQuestion question) {
    QMessageBox dialog(QMessageBox::Warning, "Varnic", QString::fromStdString(question.title));
    dialog.setTextFormat(Qt::PlainText);
    dialog.setInformativeText(QString::fromStdString(question.detail));
    std::map<QAbstractButton*, QuitQuestion::Answer> answers;
    for (const QuitQuestion::Choice& choice : QuitQuestion::choices) {
        const bool isLoss = choice.answer == QuitQuestion::Answer::quitAnyway;
        answers[dialog.addButton(choice.text, isLoss ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole)] =
            choice.answer;
    }
    // Not among the buttons: closing the question or pressing Escape is an answer too.
    QPushButton* const stay = dialog.addButton(QMessageBox::Cancel);
    stay->hide();
    dialog.setEscapeButton(stay);
    dialog.winId();
    dialog.windowHandle()->setTransientParent(window);
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    co_await qCoro(&dialog, &QDialog::finished);
    const auto answer = answers.find(dialog.clickedButton());
    co_return answer == answers.end() ? QuitQuestion::Answer::stay : answer->second;
}

} // namespace varnic::QuitDialog
