#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "VarnicCLI/Interruption.h"

#include <QCoreApplication>

#include <functional>
#include <string>

/// The application's flows on the terminal.
namespace varnic::cli {

/// The application without a screen, with settings for this run only. An interrupt or a polite kill ends what its flows
/// are about.
struct Application {
    Application() { model.settings.keepForThisRun(); }

    /// Ahead of all that starts threads.
    Interruption interruption;
    int argumentCount = 0;
    QCoreApplication loop{argumentCount, nullptr};
    AppModel model{AppPlaces::fromEnvironment()};
};

/// Reads the library; a line on standard error about files that cannot be read.
void readLibrary(AppModel& model);

/// Does one flow of the application to its end, with a bar for the call that is being transcribed; an interrupt ends
/// that. The flow must not throw.
void runFlow(Application& application, const std::function<QCoro::Task<>()>& flow);

/// What the application said last.
std::string toastText(const AppModel& model);

/// Sees to it that the note is on disk. Throws std::runtime_error with the user's sentence where it cannot be.
void saveOrThrow(AppModel& model, const Uuid& id);

} // namespace varnic::cli
