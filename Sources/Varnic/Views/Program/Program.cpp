#include "Varnic/Views/Program/Program.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/Program/FileDialogs.h"
#include "Varnic/Views/Program/QuitDialog.h"
#include "Varnic/Views/Program/QuitRule.h"
#include "Varnic/Views/Program/Sounds.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QIcon>
#include <QQmlComponent>
#include <QUrl>

namespace varnic {

Program::Program(AppPlaces places)
    : model_(std::move(places)), delegate_(model_), window_(ViewContext{.model = model_, .shell = &delegate_}),
      signals_([this] { delegate_.terminate(AppDelegate::Occasion::system); }) {
    fillInDesktop();
    delegate_.hooks.ask = [this](QuitQuestion question) {
        window_.activate();
        return QuitDialog::ask(&window_.window(), std::move(question));
    };
    delegate_.notifications().isWindowInFront = [this] { return window_.isInFront(); };
    delegate_.pill().present = [this] { presentPill(); };
    delegate_.pill().orderOut = [this] {
        if (pill_) {
            pill_->hide();
        }
    };
    connect(&window_.window(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        wasShown_ = wasShown_ || isVisible;
        quitIfForsaken();
    });
    connect(&model_.recorder(), &RecordingController::stateChanged, this, &Program::quitIfForsaken);
    processingWatcher_ = model_.processing.addNotifier([this] { quitIfForsaken(); });
    importWatcher_ = model_.isImporting.addNotifier([this] { quitIfForsaken(); });
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { delegate_.finishBeforeLogout(); });
}

void Program::fillInDesktop() {
    model_.desktop.activate = [this] { window_.activate(); };
    model_.desktop.closeWindow = [this] { window_.window().close(); };
    model_.desktop.playSound = [](const std::string& name) { Sounds::play(name); };
    model_.desktop.copyText = [](const std::string& text) {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    };
    model_.desktop.openURL = [](const std::string& url) {
        QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
    };
    model_.desktop.chooseRecording = [this](std::string message) {
        return FileDialogs::chooseRecording(&window_.window(), std::move(message));
    };
    model_.desktop.chooseFolder = [this](std::string message) {
        return FileDialogs::chooseFolder(&window_.window(), std::move(message));
    };
    model_.desktop.chooseDestination = [this](std::string fileName) {
        return FileDialogs::chooseDestination(&window_.window(), std::move(fileName));
    };
}

void Program::start(const Request& request) {
    if (request.kind != Request::Kind::activate) {
        delegate_.perform(request);
    }
    // A press of the desktop's own shortcut records without a window in the way of the call; the reminder, the pill and
    // the tray show what goes on.
    if (request.kind == Request::Kind::toggleRecording || request.kind == Request::Kind::background) {
        QMetaObject::invokeMethod(this, &Program::launch, Qt::QueuedConnection);
    } else {
        window_.activate();
        window_.afterFirstPicture([this] { launch(); });
    }
}

void Program::launch() {
    QGuiApplication::setWindowIcon(QIcon::fromTheme("app.brevin.Varnic"));
    tray_.emplace(model_, delegate_.menus().tray);
    delegate_.applicationDidFinishLaunching();
    quitIfForsaken();
}

bool Program::isProcessing() const {
    return !model_.processing.value().empty() || model_.isImporting.value();
}

/// Without a tray a closed window would leave a program that nobody sees. It ends once all is recorded and transcribed.
void Program::quitIfForsaken() {
    const QuitRule::Situation now{.isWindowVisible = window_.isVisible() || !wasShown_,
                                  .hasTray = !tray_ || tray_->isReachable(),
                                  .isRecording = isBusy(model_.recorder().state()),
                                  .isProcessing = isProcessing()};
    if (QuitRule::shouldQuit(now)) {
        // The flow that is just ending is through by then.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!window_.isVisible() && !isBusy(model_.recorder().state()) && !isProcessing()) {
                    delegate_.terminate();
                }
            },
            Qt::QueuedConnection);
    }
}

void Program::presentPill() {
    if (!pill_) {
        QQmlComponent component(&window_.engine(), QUrl("qrc:/qt/qml/Varnic/LiveView/Pill.qml"));
        pill_.reset(qobject_cast<QQuickWindow*>(component.create()));
    }
    if (pill_) {
        pill_->show();
        pill_->raise();
    }
}

} // namespace varnic
