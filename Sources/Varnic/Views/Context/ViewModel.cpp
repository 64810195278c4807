#include "Varnic/Views/Context/ViewModel.h"

#include <QVariant>

namespace varnic {

namespace {

constexpr const char* property = "appModel";

} // namespace

void setAppModel(QQmlEngine& engine, AppModel& model) {
    engine.setProperty(property, QVariant::fromValue(&model));
}

AppModel& appModel(const QQmlEngine& engine) {
    return *engine.property(property).value<AppModel*>();
}

} // namespace varnic
