#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QQmlEngine>

namespace varnic {

/// Gives the engine the model that its QML singletons show. To be called before any QML is loaded; the model outlives
/// the engine.
void setAppModel(QQmlEngine& engine, AppModel& model);

/// The model of the engine. For the `create` functions of QML singletons.
AppModel& appModel(const QQmlEngine& engine);

} // namespace varnic
