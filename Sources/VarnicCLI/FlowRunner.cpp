#include "VarnicCLI/FlowRunner.h"

#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Text/Wording.h"

#include <QTimer>

#include <chrono>
#include <stdexcept>

namespace varnic::cli {

namespace {

using namespace std::chrono_literals;

} // namespace

void runFlow(AppModel& model, const Interruption& interruption, const std::function<QCoro::Task<>()>& flow) {
    Terminal::StatusLine line;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const auto& stages = model.processing.value();
        if (!stages.empty()) {
            line.show(Terminal::bar(stages.begin()->second));
        }
        if (interruption.happened()) {
            model.cancelProcessing();
        }
    });
    timer.start(50ms);
    QCoro::waitFor(flow());
}

void saveOrThrow(AppModel& model, const Uuid& id) {
    model.flushSaves();
    if (!model.isSaved(id)) {
        const auto& toast = model.toast.value();
        throw std::runtime_error(Wording::shown(toast ? toast->text : ""));
    }
}

} // namespace varnic::cli
