#include "VarnicPlatform/Capture/SoundDevices.h"

#include "VarnicPlatform/Capture/SoundConnection.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace varnic {

namespace {

/// Seconds between two looks at the connection.
constexpr double tick = 0.1;
/// The first answer comes behind the list of objects, the second behind what was asked of them on hearing of it.
constexpr int answersToWaitFor = 2;

std::vector<SoundDevice> devices(const std::vector<const SoundNode*>& nodes) {
    std::vector<SoundDevice> devices;
    std::ranges::transform(nodes, std::back_inserter(devices), [](const SoundNode* node) {
        return SoundDevice{.name = node->name, .label = node->label()};
    });
    return devices;
}

} // namespace

class SoundDevices::Connection {
public:
    explicit Connection(SoundDevices& owner) : sound([&owner] { owner.look(); }) {}

    SoundConnection sound;
    /// Answers of the server until all that there is has been told.
    int awaited = 0;
    /// What was told last.
    std::optional<SoundDeviceList> told;
};

SoundDevices::SoundDevices(Changed changed) : changed_(std::move(changed)) {
    if (override) {
        changed_(*override);
        return;
    }
    connection_ = std::make_unique<Connection>(*this);
    const SoundConnection::Lock lock(connection_->sound);
    connection_->sound.every(tick, [this] { tend(); });
    tend();
}

SoundDevices::~SoundDevices() {
    if (!connection_) {
        return;
    }
    const SoundConnection::Lock lock(connection_->sound);
    connection_->sound.stopTicking();
    connection_->sound.close();
}

/// In the loop's thread, or with the loop locked.
void SoundDevices::tend() {
    SoundConnection& sound = connection_->sound;
    if (sound.isLost()) {
        sound.close();
    }
    if (!sound.isOpen() && sound.open()) {
        connection_->awaited = answersToWaitFor;
        sound.ask();
    } else if (sound.isOpen() && connection_->awaited > 0 && sound.hasAnswered()) {
        --connection_->awaited;
        sound.ask();
    }
    look();
}

void SoundDevices::look() {
    SoundConnection& sound = connection_->sound;
    SoundDeviceList list;
    if (sound.isOpen() && !sound.isLost()) {
        if (connection_->awaited > 0) {
            return;
        }
        const SoundGraph& graph = sound.graph();
        list = {.isReachable = true,
                .hasSound = graph.hasSound(),
                .microphones = devices(graph.microphones()),
                .outputs = devices(graph.outputs())};
    }
    if (connection_->told != list) {
        connection_->told = list;
        changed_(std::move(list));
    }
}

} // namespace varnic
