#pragma once

#include "Varnic/Shell/QuitQuestion.h"

#include <QCoro/QCoroTask>
#include <QWindow>

/// The question about notes that could not be saved, as a dialog above the window. Main thread.
namespace varnic::QuitDialog {

QCoro::Task<QuitQuestion::Answer> ask(QWindow* window, QuitQuestion question);

} // namespace varnic::QuitDialog
