#pragma once

#include <QCoro/QCoroTask>

namespace varnic {

class AppModel;
class Checks;

/// Looks at what a user's journey left in library and settings, after a restart.
QCoro::Task<> checkPersistence(AppModel& model, Checks& checks);

} // namespace varnic
