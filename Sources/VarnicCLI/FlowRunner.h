#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "VarnicCLI/Interruption.h"

#include <functional>

/// The application's flows on the terminal.
namespace varnic::cli {

/// Does one flow of the application to its end, with a bar for the call that is being written down; an interrupt ends
/// that. The flow must not throw.
void runFlow(AppModel& model, const Interruption& interruption, const std::function<QCoro::Task<>()>& flow);

/// Sees to it that the note is on disk. Throws std::runtime_error with the user's sentence where it cannot be.
void saveOrThrow(AppModel& model, const Uuid& id);

} // namespace varnic::cli
