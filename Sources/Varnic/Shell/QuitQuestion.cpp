#include "Varnic/Shell/QuitQuestion.h"

#include <fmt/format.h>

#include <algorithm>

namespace varnic {

QuitQuestion QuitQuestion::about(const AppModel& model) {
    const std::vector<Uuid> notes = model.unsavedNotes();
    const bool areSpared = std::ranges::all_of(notes, [&model](const Uuid& id) { return model.isSpared(id); });
    return {.title = notes.size() == 1 ? fmt::format("Couldn’t save “{}”", model.note(notes.front())->displayTitle())
                                       : fmt::format("Couldn’t save {} notes", notes.size()),
            .detail =
                fmt::format("{} {}", *model.saveProblem(notes.front()),
                            areSpared ? "When you quit, what you wrote is kept aside and saved at the next start, "
                                        "if that’s possible then."
                                      : "When you quit, what you wrote since it was last saved is lost.")};
}

} // namespace varnic
