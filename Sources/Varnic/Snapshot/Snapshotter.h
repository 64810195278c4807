#pragma once

#include <QCoro/QCoroTask>

#include <filesystem>

namespace varnic {

class AppDelegate;
class AppModel;

/// The program takes pictures of all its screens: VARNIC_SNAPSHOT_DIR names the folder for them. They show an invented
/// library at a fixed moment, and nothing of the machine or the user, so that the same program makes the same files.
/// Each is taken in the light and in the dark, unless VARNIC_SNAPSHOT_LOOK is "light" or "dark"; VARNIC_SNAPSHOT_SHOTS
/// names those to take, with commas between.
namespace Snapshotter {

/// Whether the environment asks for it; a self-test comes before that.
bool isAskedFor();

/// Has Qt draw into memory, twice as finely as the screen's points, and takes zone, language and style of the user's
/// desktop away. To be called before there is an application.
void prepare();

/// Takes them, at two pixels a point. What can't be taken or written is told on standard error, and the program's exit
/// code is 1 then. Main thread; model and shell are at the beginning of their life and serve nothing else from here on.
QCoro::Task<> run(AppModel& model, AppDelegate& shell, std::filesystem::path folder);

} // namespace Snapshotter
} // namespace varnic
