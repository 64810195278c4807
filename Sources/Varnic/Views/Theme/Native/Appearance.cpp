#include "Varnic/Views/Theme/Native/Appearance.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace varnic {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString look = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");

/// Values of color-scheme; 0 is "no preference".
enum class ColorScheme : unsigned { dark = 1, light = 2 };

QString key(const QString& space, const QString& name) {
    return space + u' ' + name;
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::WindowText).lightnessF() > palette.color(QPalette::Window).lightnessF();
}

} // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
    qGuiApp->installEventFilter(this);
    bus_.connect(service, path, interface, QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    refresh();
    readAll();
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        refresh();
    }
    return QObject::eventFilter(watched, event);
}

void Appearance::readAll() {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    call << QStringList{look, gnome};
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this); // `this` owns it
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError()) {
            return;
        }
        const auto spaces = qdbus_cast<QMap<QString, QVariantMap>>(watcher->reply().arguments().value(0));
        for (auto space = spaces.begin(); space != spaces.end(); ++space) {
            for (auto setting = space->begin(); setting != space->end(); ++setting) {
                settings_.insert(key(space.key(), setting.key()), setting.value());
            }
        }
        refresh();
    });
}

void Appearance::settingChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 3) {
        settings_.insert(key(arguments[0].toString(), arguments[1].toString()),
                         arguments[2].value<QDBusVariant>().variant());
        refresh();
    }
}

Appearance::Look Appearance::desktopsLook() const {
    const auto scheme = static_cast<ColorScheme>(settings_.value(key(look, QStringLiteral("color-scheme"))).toUInt());
    const bool dark =
        scheme == ColorScheme::dark || (scheme != ColorScheme::light && isDark(QGuiApplication::palette()));
    const bool reduceMotion = settings_.value(key(look, QStringLiteral("reduced-motion"))).toUInt() == 1 ||
                              !settings_.value(key(gnome, QStringLiteral("enable-animations")), true).toBool();
    return {.dark = dark, .reduceMotion = reduceMotion};
}

void Appearance::fix(std::optional<Look> fixed) {
    fixed_ = fixed;
    refresh();
}

void Appearance::refresh() {
    const Look before = std::exchange(look_, fixed_ ? *fixed_ : desktopsLook());
    if (look_.dark != before.dark) {
        Q_EMIT darkChanged();
    }
    if (look_.reduceMotion != before.reduceMotion) {
        Q_EMIT reduceMotionChanged();
    }
}

} // namespace varnic
