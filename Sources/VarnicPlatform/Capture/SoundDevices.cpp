#include "VarnicPlatform/Capture/SoundDevices.h"

#include "VarnicPlatform/Capture/SoundConnection.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace varnic {

namespace {

/// Seconds between two attempts to reach a server that is gone.
constexpr double retryInterval = 0.5;

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
    /// What was told last.
    std::optional<SoundDeviceList> told;
};

SoundDevices::SoundDevices(Changed changed)
    : changed_(std::move(changed)), connection_(std::make_unique<Connection>(*this)) {
    const SoundConnection::Lock lock(connection_->sound);
    connection_->sound.every(retryInterval, [this] { tend(); });
    tend();
}

SoundDevices::~SoundDevices() {
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
    if (!sound.isOpen()) {
        static_cast<void>(sound.open());
    }
    look();
}

void SoundDevices::look() {
    // The first objects are told while the graph is being made.
    if (!connection_) {
        return;
    }
    SoundConnection& sound = connection_->sound;
    SoundDeviceList list;
    if (sound.isOpen() && !sound.isLost()) {
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
