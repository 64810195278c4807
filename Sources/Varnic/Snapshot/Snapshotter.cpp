#include "Varnic/Snapshot/Snapshotter.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/SelfTest/StandIns.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Snapshot/Scenes.h"
#include "Varnic/Snapshot/ShotWindow.h"
#include "Varnic/Snapshot/Shots.h"
#include "Varnic/Snapshot/StillPicture.h"
#include "Varnic/Views/Theme/Native/Appearance.h"
#include "VarnicCore/Models/FixedClock.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStringList>
#include <QStyleHints>

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varnic::Snapshotter {

namespace {

constexpr const char* folderVariable = "VARNIC_SNAPSHOT_DIR";
constexpr const char* lookVariable = "VARNIC_SNAPSHOT_LOOK";
constexpr const char* shotsVariable = "VARNIC_SNAPSHOT_SHOTS";
/// A Wednesday afternoon in UTC.
constexpr const char* moment = "2026-02-25T15:24:00Z";
constexpr QSize mainWindowSize(1000, 640);

QQuickWindow* mainWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (auto* const found = qobject_cast<QQuickWindow*>(window);
            found != nullptr && found->objectName() == "main") {
            return found;
        }
    }
    return nullptr;
}

std::vector<bool> looks() {
    const QByteArray wanted = qgetenv(lookVariable);
    if (wanted == "light" || wanted == "dark") {
        return {wanted == "dark"};
    }
    return {false, true};
}

bool isWanted(const Shot& shot) {
    const QStringList wanted = qEnvironmentVariable(shotsVariable).split(u',', Qt::SkipEmptyParts);
    return wanted.isEmpty() || wanted.contains(QLatin1StringView(shot.name.data(), qsizetype(shot.name.size())));
}

/// Takes one picture after another of the windows.
class Session {
public:
    Session(AppModel& model, QQuickWindow& window, std::filesystem::path folder)
        : model_(model), window_(window), engine_(*qmlEngine(&window)), folder_(std::move(folder)) {}

    [[nodiscard]] bool hasFailed() const { return hasFailed_; }

    QCoro::Task<> takeAll() {
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        window_.resize(mainWindowSize);
        auto* const appearance =
            engine_.singletonInstance<Appearance*>(qmlTypeId("Varnic.Theme.Native", 1, 0, "Appearance"));
        for (const bool isDark : looks()) {
            appearance->fix(Appearance::Look{.dark = isDark, .reduceMotion = true});
            for (const Shot& shot : allShots()) {
                if (isWanted(shot)) {
                    co_await take(shot, isDark);
                }
            }
        }
        appearance->fix(std::nullopt);
    }

private:
    QCoro::Task<> take(const Shot& shot, bool isDark) {
        Scenes::rest(model_);
        shot.arrange(model_);
        const std::unique_ptr<QQuickWindow> own = ownWindow(shot, engine_);
        if (own) {
            own->show();
        }
        QQuickWindow& window = own ? *own : window_;
        // Whatever window the last picture was of.
        window.requestActivate();
        auto looking = stillPicture(window);
        const std::optional<QImage> picture = co_await looking;
        const std::string file = fmt::format("{}{}.png", shot.name, isDark ? "-dark" : "");
        if (!picture) {
            fail(file, "doesn’t come to rest");
        } else if (!picture->save(QString::fromStdString((folder_ / file).string()))) {
            fail(file, "can’t be written");
        }
    }

    void fail(const std::string& file, std::string_view reason) {
        hasFailed_ = true;
        fmt::print(stderr, "varnic: {} {}\n", file, reason);
    }

    AppModel& model_;
    QQuickWindow& window_;
    QQmlEngine& engine_;
    std::filesystem::path folder_;
    bool hasFailed_ = false;
};

} // namespace

bool isAskedFor() {
    return std::getenv(folderVariable) != nullptr && std::getenv("VARNIC_SELFTEST") == nullptr;
}

void prepare() {
    constexpr std::array<std::pair<const char*, const char*>, 7> environment{{{"QT_QPA_PLATFORM", "offscreen"},
                                                                              {"QT_QUICK_BACKEND", "software"},
                                                                              {"QT_SCALE_FACTOR", "2"},
                                                                              {"QT_FONT_DPI", "96"},
                                                                              {"QT_QPA_PLATFORMTHEME", ""},
                                                                              {"TZ", "UTC"},
                                                                              {"LC_ALL", "C.UTF-8"}}};
    for (const auto& [name, value] : environment) {
        qputenv(name, value);
    }
}

QCoro::Task<> run(AppModel& model, AppDelegate& shell, std::filesystem::path folder) {
    QQuickWindow* const window = mainWindow();
    if (window == nullptr) {
        fmt::print(stdout, "no main window\n");
        co_return;
    }
    const FixedClock clock(parseDate(moment));
    const StandIns standIns(model, shell);
    model.region = {.locale = "en_GB", .timeZone = "UTC", .dateLocale = ""};
    model.settings.localeID = std::string("en-GB");
    Session session(model, *window, folder);
    std::optional<std::string> failure;
    try {
        std::filesystem::create_directories(folder);
        co_await session.takeAll();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (failure) {
        fmt::print(stderr, "varnic: {}\n", *failure);
    }
    if (failure || session.hasFailed()) {
        shell.hooks.quit = [] { QCoreApplication::exit(1); };
    }
}

} // namespace varnic::Snapshotter
