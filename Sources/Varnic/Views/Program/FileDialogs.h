#pragma once

#include "Varnic/AppModel/Desktop.h"

#include <QWindow>

/// The desktop's dialogs for files, above the window, which stays usable behind them. Main thread.
namespace varnic::FileDialogs {

QCoro::Task<Desktop::File> chooseRecording(QWindow* window, std::string message);
QCoro::Task<Desktop::File> chooseFolder(QWindow* window, std::string message);
QCoro::Task<Desktop::File> chooseDestination(QWindow* window, std::string fileName);

} // namespace varnic::FileDialogs
