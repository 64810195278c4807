#include "VarnicPlatform/Capture/MicrophoneStream.h"

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Capture/ApplicationName.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>

namespace varnic {

namespace {

constexpr int rate = TrackFormat::processing.rate;

/// The HostClock's time at which the next frame of the stream was at the device.
double stampOf(pw_stream* stream) {
    pw_time time{};
    pw_stream_get_time_n(stream, &time, sizeof time);
    const double delay = time.rate.denom == 0 ? 0 : static_cast<double>(time.delay) * time.rate.num / time.rate.denom;
    return static_cast<double>(time.now) / SPA_NSEC_PER_SEC - delay;
}

} // namespace

struct MicrophoneStream::Events {
    static constexpr pw_stream_events stream{
        .version = PW_VERSION_STREAM_EVENTS,
        .process = [](void* data) { static_cast<MicrophoneStream*>(data)->process(); },
    };
};

MicrophoneStream::MicrophoneStream(pw_core* core, const SoundNode& source)
    : source_(source.id), label_(source.label()),
      // No media.role: "Communication" makes the session manager link microphones by rules of its own. Nor is the
      // stream forbidden to be moved, since then no volume control could; where the session manager moves it by itself,
      // to the monitor of a sink when a microphone vanishes, `verify` closes it.
      stream_(
          pw_stream_new(core, "your side of a call",
                        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_APP_NAME,
                                          applicationName, PW_KEY_APP_ID, applicationId, PW_KEY_APP_ICON_NAME,
                                          applicationId, PW_KEY_NODE_NAME, "varnic-microphone", PW_KEY_NODE_DESCRIPTION,
                                          "Varnic: your side of a call", PW_KEY_NODE_LATENCY, "1024/48000",
                                          PW_KEY_TARGET_OBJECT, source.name.c_str(), "state.restore-target", "false",
                                          "state.restore-props", "false", nullptr))) {
    if (stream_ == nullptr) {
        return;
    }
    pw_stream_add_listener(stream_, &listener_, &Events::stream, this);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_audio_info_raw info{.format = SPA_AUDIO_FORMAT_F32, .flags = 0, .rate = rate, .channels = 1, .position = {}};
    info.position[0] = SPA_AUDIO_CHANNEL_MONO;
    const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
    constexpr auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                        PW_STREAM_FLAG_RT_PROCESS);
    pw_stream_connect(stream_, PW_DIRECTION_INPUT, PW_ID_ANY, flags, &format, 1);
}

MicrophoneStream::~MicrophoneStream() {
    if (stream_ != nullptr) {
        spa_hook_remove(&listener_);
        pw_stream_destroy(stream_);
    }
}

void MicrophoneStream::verify(const SoundGraph& graph) {
    isVerified_ = linked(graph) != nullptr;
}

const SoundNode* MicrophoneStream::linked(const SoundGraph& graph) const {
    return stream_ == nullptr ? nullptr : graph.microphoneOf(node());
}

std::uint32_t MicrophoneStream::node() const {
    return stream_ == nullptr ? PW_ID_ANY : pw_stream_get_node_id(stream_);
}

void MicrophoneStream::follow(const SoundNode& source) {
    source_ = source.id;
    label_ = source.label();
}

/// In the real-time thread.
void MicrophoneStream::process() {
    double stamp = stampOf(stream_);
    for (pw_buffer* buffer = pw_stream_dequeue_buffer(stream_); buffer != nullptr;
         buffer = pw_stream_dequeue_buffer(stream_)) {
        const spa_data& data = buffer->buffer->datas[0];
        if (data.data != nullptr && isVerified_.load(std::memory_order_relaxed)) {
            const std::uint32_t offset = std::min(data.chunk->offset, data.maxsize);
            const std::uint32_t frames =
                std::min(data.chunk->size, data.maxsize - offset) / static_cast<std::uint32_t>(sizeof(float));
            const auto* samples = static_cast<const float*>(
                static_cast<const void*>(static_cast<const std::uint8_t*>(data.data) + offset));
            lastHeard_.store(HostClock::now(), std::memory_order_relaxed);
            if (FrameRing* ring = ring_) {
                ring->push(stamp, rate, &samples, frames);
            }
            stamp += static_cast<double>(frames) / rate;
        }
        pw_stream_queue_buffer(stream_, buffer);
    }
}

} // namespace varnic
