#include "VarnicPlatform/Capture/SoundSurvey.h"

#include "VarnicPlatform/Capture/SoundConnection.h"

#include <set>

namespace varnic {

namespace {

constexpr double answerTime = 3;

std::optional<std::string> nameOf(const SoundNode* node) {
    if (node == nullptr) {
        return std::nullopt;
    }
    return node->label();
}

} // namespace

SoundSurvey SoundSurvey::take() {
    SoundConnection connection([] {});
    const SoundConnection::Lock lock(connection);
    SoundSurvey survey;
    if (!connection.open() || !connection.settle(answerTime)) {
        connection.close();
        return survey;
    }
    const SoundGraph& graph = connection.graph();
    survey.isReachable = true;
    survey.hasSound = graph.hasSound();
    survey.microphone = nameOf(graph.microphone());
    survey.output = nameOf(graph.output());
    std::set<std::string> playing;
    for (const SoundNode* program : graph.programs()) {
        if (program->isRunning) {
            playing.insert(program->program.empty() ? program->name : program->program);
        }
    }
    survey.playing.assign(playing.begin(), playing.end());
    connection.close();
    return survey;
}

} // namespace varnic
