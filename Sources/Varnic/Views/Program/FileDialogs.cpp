#include "Varnic/Views/Program/FileDialogs.h"

#include "VarnicCore/Models/Wording.h"

#include <QCoro/QCoroSignal>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include <memory>

namespace varnic::FileDialogs {

namespace {

QCoro::Task<Desktop::File> run(std::unique_ptr<QFileDialog> dialog, QWindow* window) {
    dialog->winId();
    dialog->windowHandle()->setTransientParent(window);
    dialog->open();
    const int answer = co_await qCoro(dialog.get(), &QFileDialog::finished);
    const QStringList files = dialog->selectedFiles();
    if (answer != QDialog::Accepted || files.isEmpty()) {
        co_return std::nullopt;
    }
    co_return files.front().toStdString();
}

} // namespace

QCoro::Task<Desktop::File> chooseRecording(QWindow* window, std::string message) {
    auto dialog = std::make_unique<QFileDialog>(nullptr, QString::fromStdString(Wording::shown(message)));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters({"Recordings (*.m4a *.mp3 *.wav *.flac *.ogg *.opus *.oga *.aac *.aiff *.aif *.caf *.wma "
                            "*.mp4 *.m4v *.mov *.mkv *.webm *.avi)",
                            "All files (*)"});
    auto running = run(std::move(dialog), window);
    co_return co_await running;
}

QCoro::Task<Desktop::File> chooseFolder(QWindow* window, std::string message) {
    auto dialog = std::make_unique<QFileDialog>(nullptr, QString::fromStdString(message));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    auto running = run(std::move(dialog), window);
    co_return co_await running;
}

QCoro::Task<Desktop::File> chooseDestination(QWindow* window, std::string fileName) {
    auto dialog = std::make_unique<QFileDialog>();
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString name = QString::fromStdString(fileName);
    dialog->setDefaultSuffix(QFileInfo(name).suffix());
    dialog->selectFile(name);
    auto running = run(std::move(dialog), window);
    co_return co_await running;
}

} // namespace varnic::FileDialogs
