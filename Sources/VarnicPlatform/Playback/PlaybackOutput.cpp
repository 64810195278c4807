#include "VarnicPlatform/Playback/PlaybackOutput.h"

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicPlatform/Capture/ApplicationName.h"
#include "VarnicPlatform/Capture/PlaybackMarker.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>

namespace varnic {

namespace {

/// Seconds. A wireless device takes a few to wake up.
constexpr double answerTime = 3;
constexpr double patience = 5;

constexpr int rate = PlaybackQueue::rate;
constexpr auto frameBytes = static_cast<std::uint32_t>(PlaybackQueue::channels * sizeof(float));
constexpr std::uint32_t usualFrames = 1024;

/// The HostClock's time at which the next frame given to the stream is heard.
double heardAt(pw_stream* stream) {
    pw_time time{};
    pw_stream_get_time_n(stream, &time, sizeof time);
    const double delay = time.rate.denom == 0 ? 0 : static_cast<double>(time.delay) * time.rate.num / time.rate.denom;
    // Only `delay` counts in the graph's rate; a buffer's size is set in frames below.
    return static_cast<double>(time.now) / SPA_NSEC_PER_SEC + delay +
           static_cast<double>(time.queued + time.buffered) / rate;
}

} // namespace

struct PlaybackOutput::Events {
    static constexpr pw_stream_events stream{
        .version = PW_VERSION_STREAM_EVENTS,
        .process = [](void* data) { static_cast<PlaybackOutput*>(data)->process(); },
    };
};

PlaybackOutput::PlaybackOutput(PlaybackQueue& queue) : queue_(queue), connection_([] {}) {
    const SoundConnection::Lock lock(connection_);
    try {
        if (!connection_.open() || !connection_.settle(answerTime)) {
            throw PlaybackError("The sound system, PipeWire, isn’t running.");
        }
        if (!connection_.graph().hasSound()) {
            throw PlaybackError("PipeWire is running, but has no sound devices. Does PulseAudio run the sound?");
        }
        if (connection_.graph().output() == nullptr) {
            throw PlaybackError("There is no speaker or headphones to play the call on.");
        }
        connect();
    } catch (const PlaybackError&) {
        close();
        throw;
    }
    lastLinked_ = HostClock::now();
    lastAsked_ = lastLinked_;
}

PlaybackOutput::~PlaybackOutput() {
    const SoundConnection::Lock lock(connection_);
    close();
}

void PlaybackOutput::connect() {
    // No media.role: session managers keep volume and device for all of a role together, and calls must not follow
    // where somebody sends the music. With the program's id they are kept for its calls alone.
    stream_ = pw_stream_new(connection_.core(), "Call",
                            pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                                              PW_KEY_APP_NAME, applicationName, PW_KEY_APP_ID, applicationId,
                                              PW_KEY_APP_ICON_NAME, applicationId, PW_KEY_NODE_NAME, "varnic-playback",
                                              PW_KEY_NODE_DESCRIPTION, "Varnic: a call played back",
                                              PW_KEY_NODE_LATENCY, "1024/48000", playbackMarker, "true", nullptr));
    if (stream_ == nullptr) {
        throw PlaybackError("PipeWire refused the connection.");
    }
    pw_stream_add_listener(stream_, &listener_, &Events::stream, this);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_audio_info_raw info{.format = SPA_AUDIO_FORMAT_F32,
                            .flags = 0,
                            .rate = rate,
                            .channels = static_cast<std::uint32_t>(PlaybackQueue::channels),
                            .position = {SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR}};
    const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
    constexpr auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                        PW_STREAM_FLAG_RT_PROCESS);
    if (pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &format, 1) < 0) {
        throw PlaybackError("PipeWire refused the connection.");
    }
}

/// With the loop locked.
void PlaybackOutput::close() {
    if (stream_ != nullptr) {
        spa_hook_remove(&listener_);
        pw_stream_destroy(stream_);
        stream_ = nullptr;
    }
    connection_.close();
}

void PlaybackOutput::check() {
    const SoundConnection::Lock lock(connection_);
    const double now = HostClock::now();
    if (connection_.graph().reachesOutput(pw_stream_get_node_id(stream_))) {
        lastLinked_ = now;
    }
    const pw_stream_state state = pw_stream_get_state(stream_, nullptr);
    const bool isCutOff = state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED;
    // Where no output is left the stream may run on into nothing; where the session manager is gone it just stops.
    const bool isStalled = now > std::min(lastLinked_, lastAsked_.load(std::memory_order_relaxed)) + patience;
    if (connection_.isLost() || isCutOff || isStalled) {
        throw PlaybackError("The sound output was lost.");
    }
}

/// In the real-time thread.
void PlaybackOutput::process() {
    lastAsked_.store(HostClock::now(), std::memory_order_relaxed);
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream_);
    if (buffer == nullptr) {
        return;
    }
    spa_data& data = buffer->buffer->datas[0];
    const auto most = buffer->requested == 0 ? usualFrames : static_cast<std::uint32_t>(buffer->requested);
    const std::uint32_t frames = data.data == nullptr ? 0 : std::min(data.maxsize / frameBytes, most);
    queue_.pop({static_cast<float*>(data.data), frames * PlaybackQueue::channels}, heardAt(stream_));
    *data.chunk = {
        .offset = 0, .size = frames * frameBytes, .stride = static_cast<std::int32_t>(frameBytes), .flags = 0};
    buffer->size = frames;
    pw_stream_queue_buffer(stream_, buffer);
}

} // namespace varnic
