#include "VarnicPlatform/Capture/OwnPlayer.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <array>
#include <numbers>

namespace varnic {

namespace {

constexpr int rate = 48'000;

} // namespace

OwnPlayer::OwnPlayer(double frequency) : frequency_(frequency), loop_(pw_thread_loop_new("player", nullptr)) {
    static constexpr pw_stream_events events{
        .version = PW_VERSION_STREAM_EVENTS,
        .process = [](void* data) { static_cast<OwnPlayer*>(data)->process(); },
    };
    stream_ = pw_stream_new_simple(
        pw_thread_loop_get_loop(loop_), "player",
        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback", nullptr), &events, this);
    std::array<std::uint8_t, 1024> memory{};
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, memory.data(), memory.size());
    spa_audio_info_raw info{.format = SPA_AUDIO_FORMAT_F32, .flags = 0, .rate = rate, .channels = 1, .position = {}};
    info.position[0] = SPA_AUDIO_CHANNEL_MONO;
    const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
    pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                      static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS), &format,
                      1);
    pw_thread_loop_start(loop_);
}

OwnPlayer::~OwnPlayer() {
    pw_thread_loop_stop(loop_);
    pw_stream_destroy(stream_);
    pw_thread_loop_destroy(loop_);
}

void OwnPlayer::process() {
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream_);
    if (buffer == nullptr) {
        return;
    }
    spa_data& data = buffer->buffer->datas[0];
    const auto frames = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(data.maxsize / sizeof(float), buffer->requested == 0 ? 1024 : buffer->requested));
    auto* samples = static_cast<float*>(data.data);
    for (std::uint32_t i = 0; i < frames; ++i) {
        const double time = static_cast<double>(frames_ + i) / rate;
        samples[i] = static_cast<float>(Tones::loudness * std::sin(2 * std::numbers::pi * frequency_ * time));
    }
    frames_ += frames;
    *data.chunk = {
        .offset = 0, .size = frames * static_cast<std::uint32_t>(sizeof(float)), .stride = sizeof(float), .flags = 0};
    pw_stream_queue_buffer(stream_, buffer);
}

} // namespace varnic
