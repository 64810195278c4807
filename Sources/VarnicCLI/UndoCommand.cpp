#include "VarnicCLI/Command.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/NotePrinter.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"

#include <stdexcept>

namespace varnic::cli {

ExitCode undo(const Arguments& arguments) {
    const std::string& word = arguments.onlyWord("note’s id");
    Application application;
    AppModel& model = application.model;
    readLibrary(model);
    const Note before = findNote(model.notes(), word);
    const Uuid id = before.id;
    if (!model.callActions(before, model.callFiles(before)).bringBackEarlier) {
        throw std::runtime_error("No earlier version of this note is kept.");
    }
    QCoro::waitFor(model.bringBackEarlier(id));
    saveOrThrow(model, id);
    if (arguments.has("json")) {
        Terminal::printJson(LibraryStore::encoded(*model.note(id)));
    } else {
        print(*model.note(id), "", model.region);
    }
    return ExitCode::success;
}

} // namespace varnic::cli
