#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/channel_layout.h>
#include <libavutil/log.h>
#include <libavutil/mathematics.h>
#include <libavutil/samplefmt.h>
#include <libswresample/swresample.h>
}

#include <memory>
#include <new>
#include <utility>

/// FFmpeg's objects with an owner. For the implementation files of this folder.
namespace varnic::Ffmpeg {

/// Calls one of FFmpeg's functions that free an object and clear the pointer to it.
template <auto Function>
struct Release {
    template <typename Object>
    void operator()(Object* object) const {
        Function(&object);
    }
};

using Packet = std::unique_ptr<AVPacket, Release<av_packet_free>>;
using Frame = std::unique_ptr<AVFrame, Release<av_frame_free>>;
using Format = std::unique_ptr<AVFormatContext, Release<avformat_close_input>>;
using Codec = std::unique_ptr<AVCodecContext, Release<avcodec_free_context>>;
using Resample = std::unique_ptr<SwrContext, Release<swr_free>>;

/// Throws std::bad_alloc where FFmpeg gave nothing.
template <typename Owner>
Owner owned(typename Owner::pointer object) {
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return Owner(object);
}

/// A channel layout that frees itself.
struct Layout {
    AVChannelLayout value{};

    /// The usual layout of so many channels; a plain count where there is none.
    static Layout ofChannels(int channels) {
        Layout layout;
        av_channel_layout_default(&layout.value, channels);
        return layout;
    }

    Layout() = default;

    explicit Layout(const AVChannelLayout& other) {
        if (av_channel_layout_copy(&value, &other) < 0) {
            throw std::bad_alloc();
        }
    }

    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    Layout(Layout&& other) noexcept : value(other.value) { other.value = {}; }

    Layout& operator=(Layout&& other) noexcept {
        std::swap(value, other.value);
        return *this;
    }

    ~Layout() { av_channel_layout_uninit(&value); }
};

} // namespace varnic::Ffmpeg
