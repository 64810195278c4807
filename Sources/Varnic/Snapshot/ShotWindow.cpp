#include "Varnic/Snapshot/ShotWindow.h"

#include <QQmlComponent>
#include <QUrl>
#include <QVariantMap>

#include <stdexcept>
#include <utility>

namespace varnic {

namespace {

QUrl urlOf(std::string_view file) {
    return {"qrc:/qt/qml/Varnic/" + QString::fromUtf8(file.data(), static_cast<qsizetype>(file.size()))};
}

std::unique_ptr<QQuickWindow> load(std::string_view file, QQmlEngine& engine, const QVariantMap& properties) {
    QQmlComponent component(&engine, urlOf(file));
    std::unique_ptr<QObject> made(component.createWithInitialProperties(properties));
    if (qobject_cast<QQuickWindow*>(made.get()) == nullptr) {
        throw std::runtime_error(component.errorString().toStdString());
    }
    return std::unique_ptr<QQuickWindow>(qobject_cast<QQuickWindow*>(made.release()));
}

} // namespace

std::unique_ptr<QQuickWindow> ownWindow(const Shot& shot, QQmlEngine& engine) {
    if (const auto* view = std::get_if<Shot::View>(&shot.shown)) {
        return load("Snapshot/Stage.qml", engine,
                    {{"source", urlOf(view->file)}, {"width", view->size.width()}, {"height", view->size.height()}});
    }
    if (const auto* settings = std::get_if<Shot::Settings>(&shot.shown)) {
        auto window = load("SettingsViews/Settings.qml", engine, {});
        window->setProperty("tab", settings->tab);
        return window;
    }
    return nullptr;
}

} // namespace varnic
