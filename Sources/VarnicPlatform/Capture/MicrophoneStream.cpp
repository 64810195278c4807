#include "VarnicPlatform/Capture/MicrophoneStream.h"

#include "VarnicCore/Audio/PcmBuffer.h"

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

MicrophoneStream::MicrophoneStream(pw_core* core, const SoundNode& source, FrameRing& ring)
    : source_(source.id), ring_(ring),
      // No media.role: "Communication" makes the session manager link microphones by rules of its own. The stream is
      // made anew for another device, so the session manager need not move it, and must not: it falls back to the
      // monitor of a sink where it finds no microphone.
      stream_(
          pw_stream_new(core, "varnic-microphone",
                        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture",
                                          PW_KEY_NODE_NAME, "varnic-microphone", PW_KEY_NODE_LATENCY, "1024/48000",
                                          PW_KEY_NODE_DONT_RECONNECT, "true", PW_KEY_TARGET_OBJECT, source.name.c_str(),
                                          "state.restore-target", "false", "state.restore-props", "false", nullptr))) {
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
    wasConnected_ = pw_stream_connect(stream_, PW_DIRECTION_INPUT, PW_ID_ANY, flags, &format, 1) >= 0;
}

MicrophoneStream::~MicrophoneStream() {
    if (stream_ != nullptr) {
        spa_hook_remove(&listener_);
        pw_stream_destroy(stream_);
    }
}

void MicrophoneStream::verify(const SoundGraph& graph) {
    isVerified_ = stream_ != nullptr && graph.hearsMicrophone(pw_stream_get_node_id(stream_));
}

bool MicrophoneStream::hasFailed() const {
    if (stream_ == nullptr || !wasConnected_) {
        return true;
    }
    const pw_stream_state state = pw_stream_get_state(stream_, nullptr);
    return state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED;
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
            ring_.push(stamp, rate, &samples, frames);
            stamp += static_cast<double>(frames) / rate;
        }
        pw_stream_queue_buffer(stream_, buffer);
    }
}

} // namespace varnic
