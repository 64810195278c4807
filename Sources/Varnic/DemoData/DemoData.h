#pragma once

#include "VarnicCore/Models/Date.h"
#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"

#include <string>
#include <vector>

namespace varnic {

class AppModel;
class RecordingController;

/// An invented but believable library, for looking at the program. Main thread.
namespace DemoData {

/// Whose library it is.
inline constexpr const char* yourName = "Tara";

/// Whether the environment asks to show it, by VARNIC_DEMO; a self-test comes before that.
bool isAskedFor();

/// Its notes, of the days up to `now`.
std::vector<Note> notes(Date now, const Region& region);

/// Shows it as of now in place of the library; nothing is written from here on.
void load(AppModel& model);

/// Shows a library without any note from here on; only after `load`.
void clear(AppModel& model);

/// Has the recorder show a call of both sides that runs since so many seconds and comes from this application: its
/// first lines as far as they are spoken by then, at most `lines` of them, and a line that is still being spoken.
void showLive(RecordingController& recorder, double elapsed, const std::string& source, std::size_t lines);

} // namespace DemoData
} // namespace varnic
