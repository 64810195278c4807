#include "VarnicCLI/FlowRunner.h"

#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Models/Wording.h"

#include <QTimer>

#include <chrono>
#include <stdexcept>

namespace varnic::cli {

namespace {

using namespace std::chrono_literals;

} // namespace

void readLibrary(AppModel& model) {
    QCoro::waitFor(model.readLibrary());
    if (const auto& problem = model.loadProblem.value()) {
        if (model.isUnreadable.value()) {
            throw std::runtime_error(*problem);
        }
        Terminal::print(stderr, "varnic-cli: {}\n", *problem);
    }
}

void runFlow(Application& application, const std::function<QCoro::Task<>()>& flow) {
    AppModel& model = application.model;
    Terminal::StatusLine line;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const auto& stages = model.processing.value();
        if (!stages.empty()) {
            line.show(Terminal::bar(stages.begin()->second));
        }
        if (application.interruption.happened()) {
            model.cancelProcessing();
        }
    });
    timer.start(50ms);
    QCoro::waitFor(flow());
}

std::string toastText(const AppModel& model) {
    const auto& toast = model.toast.value();
    return Wording::shown(toast ? toast->text : "");
}

void saveOrThrow(AppModel& model, const Uuid& id) {
    model.flushSaves();
    if (const auto problem = model.saveProblem(id)) {
        const bool isKept = RecordingMarkFile::isIn(model.audioFolder(id));
        throw std::runtime_error(*problem +
                                 (isKept ? " The recording is kept; `varnic-cli recover` makes its note." : ""));
    }
}

} // namespace varnic::cli
