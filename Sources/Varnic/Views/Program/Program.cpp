#include "Varnic/Views/Program/Program.h"

#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/Background.h"
#include "Varnic/DemoData/DemoData.h"
#include "Varnic/LoopExecutor.h"
#include "Varnic/Recording/RecordingController.h"
#include "Varnic/SelfTest/SelfTest.h"
#include "Varnic/Snapshot/Snapshotter.h"
#include "Varnic/Views/Program/FileDialogs.h"
#include "Varnic/Views/Program/QuitDialog.h"
#include "Varnic/Views/Program/QuitRule.h"
#include "Varnic/Views/Program/Sounds.h"
#include "Varnic/Views/Theme/Native/Fonts.h"
#include "VarnicCore/Pipeline/SessionState.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QIcon>
#include <QPointer>
#include <QQmlComponent>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

#include <filesystem>
#include <utility>
#include <variant>

namespace varnic {

namespace {

/// The window of a QML file; null where that cannot be loaded.
template <typename Window>
std::unique_ptr<Window> makeWindow(QQmlEngine& engine, const char* file) {
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Varnic/") + file));
    std::unique_ptr<QObject> made(component.create());
    if (qobject_cast<Window*>(made.get()) == nullptr) {
        qWarning("%s", qPrintable(component.errorString()));
        return nullptr;
    }
    return std::unique_ptr<Window>(qobject_cast<Window*>(made.release()));
}

/// What packages install beside the program describes one that lies in no bundle.
brevin::UpdaterConfiguration updaterConfiguration() {
    const auto path = [](const QString& text) { return std::filesystem::path(text.toStdString()); };
    return brevin::UpdaterConfiguration::of(
        path(QCoreApplication::applicationFilePath()),
        path(QCoreApplication::applicationDirPath()) / "../share/varnic/Info.plist",
        path(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)));
}

} // namespace

Program::Program(AppPlaces places)
    : model_(std::move(places)), delegate_(model_),
      updater_(updaterConfiguration(), model_.settings.store(), updaterHost()),
      window_(ViewContext{.model = model_, .shell = &delegate_, .updater = &updater_}),
      signals_([this] { delegate_.terminate(AppDelegate::Occasion::system); }) {
    fillInDesktop();
    fillInHooks();
    delegate_.notifications().isWindowInFront = [this] { return window_.isInFront(); };
    delegate_.notifications().isToastInSight = [this] {
        return window_.isInFront() || (settings_ && settings_->isActive());
    };
    makePill();
    connect(&window_.window(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        wasShown_ = wasShown_ || isVisible;
        quitIfForsaken();
    });
    connect(&model_.recorder(), &RecordingController::stateChanged, this, &Program::quitIfForsaken);
    processingWatcher_ = model_.processing.addNotifier([this] { quitIfForsaken(); });
    importWatcher_ = model_.isImporting.addNotifier([this] { quitIfForsaken(); });
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { delegate_.finishBeforeLogout(); });
}

brevin::Updater::Host Program::updaterHost() {
    return {.inBackground = Background::start,
            .onMainThread = [loop = &LoopExecutor::main()](auto work) { loop->post(std::move(work)); },
            .openWindow = [this] { openUpdateWindow(); },
            .openURL = [this](const std::string& url) { model_.desktop.openURL(url); },
            .terminate = [this] { delegate_.terminate(); }};
}

void Program::fillInHooks() {
    delegate_.hooks.startKit = [this] {
        // What only shows or tests the program asks nobody for a newer one.
        if (!SelfTest::isAskedFor() && !DemoData::isAskedFor() && !Snapshotter::isAskedFor()) {
            updater_.start();
        }
    };
    delegate_.hooks.desktopParts = [this] { return desktopParts(); };
    delegate_.hooks.runSelfTest = [this] { return SelfTest::run(model_, delegate_); };
    delegate_.hooks.runSnapshots = [this](std::filesystem::path folder) {
        return Snapshotter::run(model_, delegate_, std::move(folder));
    };
    delegate_.hooks.loadDemo = [](AppModel& model) { DemoData::load(model); };
    delegate_.hooks.ask = [this](QuitQuestion question) -> QCoro::Task<QuitQuestion::Answer> {
        window_.activate();
        const QPointer self(this);
        QuitQuestion::Answer answer = co_await QuitDialog::ask(&window_.window(), std::move(question));
        if (self && answer == QuitQuestion::Answer::stay) {
            updater_.stay();
        }
        co_return answer;
    };
}

void Program::fillInDesktop() {
    model_.desktop.activate = [this] { window_.activate(); };
    model_.desktop.closeWindow = [this] { window_.window().close(); };
    model_.desktop.openSettings = [this](SettingsRow row) { openSettings(row); };
    model_.desktop.playSound = [](const std::string& name) { Sounds::play(name); };
    model_.desktop.copyText = [](const std::string& text) {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    };
    model_.desktop.openURL = [](const std::string& url) {
        QDesktopServices::openUrl(QUrl::fromEncoded(QByteArray::fromStdString(url)));
    };
    if (updater_.isOn()) {
        model_.desktop.checkForUpdates = [this] { updater_.check(true); };
    }
    model_.desktop.chooseRecording = [this](std::string message) {
        return FileDialogs::chooseRecording(windowInFront(), std::move(message));
    };
    model_.desktop.chooseFolder = [this](std::string message) {
        return FileDialogs::chooseFolder(windowInFront(), std::move(message));
    };
    model_.desktop.chooseDestination = [this](std::string fileName) {
        return FileDialogs::chooseDestination(windowInFront(), std::move(fileName));
    };
}

/// Wayland has no word for a window in front of the others, and gives one that opens the keyboard.
void Program::makePill() {
    PillController& controller = delegate_.pill();
    if (QGuiApplication::platformName().startsWith("wayland")) {
        notice_.emplace(model_);
        controller.present = [this] {
            if (!SelfTest::isAskedFor()) { // which tells nothing outside of its windows
                notice_->present();
            }
        };
        controller.orderOut = [this] { notice_->orderOut(); };
    } else {
        pill_.emplace(window_);
        controller.present = [this] { pill_->present(); };
        controller.orderOut = [this] { pill_->orderOut(); };
    }
}

/// Above which dialogs open.
QWindow* Program::windowInFront() const {
    return settings_ && settings_->isActive() ? static_cast<QWindow*>(settings_.get()) : &window_.window();
}

void Program::start(const Request& request) {
    if (request.kind != Request::Kind::activate) {
        delegate_.perform(request);
    }
    // A press of the desktop's own shortcut records without a window in the way of the call; the reminder, the pill and
    // the tray show what goes on.
    const bool isRecordingAskedFor =
        request.kind == Request::Kind::toggleRecording || request.kind == Request::Kind::recordCall;
    if (isRecordingAskedFor || request.kind == Request::Kind::background) {
        QMetaObject::invokeMethod(this, &Program::launch, Qt::QueuedConnection);
    } else {
        window_.activate();
        window_.afterFirstPicture([this] { launch(); });
    }
}

void Program::launch() {
    // Those of a program in a folder of the user's own.
    QIcon::setThemeSearchPaths(QIcon::themeSearchPaths() << QCoreApplication::applicationDirPath() + "/../share/icons");
    QGuiApplication::setWindowIcon(QIcon::fromTheme("app.brevin.Varnic"));
    tray_.emplace(model_, delegate_.menus().tray);
    tray_->clicked = [this](const QRect& icon) { toggleMenuBar(icon); };
    delegate_.applicationDidFinishLaunching();
    quitIfForsaken();
    if (!SelfTest::isAskedFor() && !DemoData::isAskedFor() && !Snapshotter::isAskedFor()) {
        tellWhatIsMissing();
    }
}

DesktopParts Program::desktopParts() const {
    DesktopParts parts = DesktopParts::onBus();
    parts.hasTray = !tray_ || tray_->isReachable();
    parts.fontPackages = missingFontPackages();
    parts.isWayland = QGuiApplication::platformName().startsWith("wayland");
    return parts;
}

/// At the very first start only: what was told once stays in the settings.
QCoro::Task<> Program::tellWhatIsMissing() {
    constexpr const char* toldKey = "missingPartsTold";
    QSettings& store = model_.settings.store();
    if (store.value(toldKey).toBool()) {
        co_return;
    }
    store.setValue(toldKey, true);
    const QPointer self(this);
    const auto look = [language = model_.settings.language(), reader = model_.region.locale] {
        return Permissions::look(false, language, reader).there;
    };
    const Permissions::Surroundings there = co_await inBackground(look);
    if (!self) {
        co_return;
    }
    std::vector<std::string> names;
    if (!there.hasSound) {
        names.emplace_back("PipeWire");
    } else if (!there.hasMicrophone) {
        names.emplace_back("a microphone");
    }
    if (!there.hasModel) {
        names.emplace_back("a speech model");
    }
    for (const MissingPart& part : MissingParts::of(desktopParts())) {
        names.push_back(part.name);
    }
    if (std::string notice = MissingParts::notice(names); !notice.empty()) {
        model_.flash({.text = std::move(notice), .symbol = "info.circle"});
    }
}

bool Program::isProcessing() const {
    return !model_.processing.value().empty() || model_.isImporting.value();
}

bool Program::isSettingsVisible() const {
    return settings_ && settings_->isVisible();
}

/// Without a tray a closed window would leave a program that nobody sees. It ends once all is recorded and transcribed.
void Program::quitIfForsaken() {
    const QuitRule::Situation now{.isWindowVisible = window_.isVisible() || isSettingsVisible() || !wasShown_,
                                  .hasTray = !tray_ || tray_->isReachable(),
                                  .isRecording = isBusy(model_.recorder().state()),
                                  .isProcessing = isProcessing()};
    if (QuitRule::shouldQuit(now)) {
        // The flow that is just ending is through by then.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!window_.isVisible() && !isSettingsVisible() && !isBusy(model_.recorder().state()) &&
                    !isProcessing()) {
                    delegate_.terminate();
                }
            },
            Qt::QueuedConnection);
    }
}

void Program::openUpdateWindow() {
    if (!updateWindow_) {
        updateWindow_ = makeWindow<QQuickWindow>(window_.engine(), "Update/UpdateWindow.qml");
    }
    if (!updateWindow_) {
        return;
    }
    // Nobody has asked for what comes without a check, and who is typing meanwhile would press its button by Return.
    const auto& phase = updater_.phase();
    const bool isUnasked = std::holds_alternative<brevin::UpdatePhase::Available>(phase) ||
                           std::holds_alternative<brevin::UpdatePhase::Ready>(phase);
    updateWindow_->setProperty("_q_showWithoutActivating", isUnasked); // Qt's own word for it
    const bool isShown = updateWindow_->isVisible();
    updateWindow_->show();
    if (isShown && !isUnasked) {
        updateWindow_->raise();
        updateWindow_->requestActivate();
    }
}

void Program::openSettings(SettingsRow row) {
    if (!settings_) {
        settings_ = makeWindow<SettingsWindow>(window_.engine(), "SettingsViews/Settings.qml");
        if (settings_) {
            connect(settings_.get(), &QWindow::visibleChanged, this, &Program::quitIfForsaken);
        }
    }
    if (settings_) {
        settings_->open(row);
    }
}

void Program::toggleMenuBar(const QRect& icon) {
    if (!menuBar_) {
        menuBar_ = makeWindow<MenuBarWindow>(window_.engine(), "SettingsViews/MenuBar.qml");
        if (menuBar_) {
            menuBar_->openProgram = [this] { window_.activate(); };
            menuBar_->quitProgram = [this] { delegate_.terminate(); };
        }
    }
    if (menuBar_) {
        menuBar_->toggleAt(icon);
    }
}

} // namespace varnic
