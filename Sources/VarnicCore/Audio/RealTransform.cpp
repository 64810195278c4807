#include "VarnicCore/Audio/RealTransform.h"

extern "C" {
#include <libavutil/tx.h>
}

#include <algorithm>
#include <new>
#include <vector>

namespace varnic {

namespace {

/// One direction of the transform.
class Direction {
public:
    Direction(std::size_t size, bool isBackward) {
        const float scale = isBackward ? 1.0F / static_cast<float>(size) : 1.0F;
        if (av_tx_init(&context_, &run_, AV_TX_FLOAT_RDFT, isBackward ? 1 : 0, static_cast<int>(size), &scale,
                       AV_TX_UNALIGNED) < 0) {
            throw std::bad_alloc();
        }
    }

    Direction(const Direction&) = delete;
    Direction& operator=(const Direction&) = delete;

    ~Direction() { av_tx_uninit(&context_); }

    /// `stride` is the size of the input's values. The input may be overwritten.
    void run(void* out, void* in, std::size_t stride) { run_(context_, out, in, static_cast<std::ptrdiff_t>(stride)); }

private:
    AVTXContext* context_ = nullptr;
    av_tx_fn run_ = nullptr;
};

} // namespace

class RealTransform::Plan {
public:
    explicit Plan(std::size_t size) : forward(size, false), backward(size, true), samples(size), bins(size / 2 + 1) {}

    Direction forward;
    Direction backward;
    std::vector<float> samples;
    std::vector<std::complex<float>> bins;
};

RealTransform::RealTransform(std::size_t size) : plan_(std::make_shared<Plan>(size)) {}

void RealTransform::forward(std::span<const float> samples, std::span<std::complex<float>> bins) {
    std::ranges::copy(samples, plan_->samples.begin());
    plan_->forward.run(bins.data(), plan_->samples.data(), sizeof(float));
}

void RealTransform::backward(std::span<const std::complex<float>> bins, std::span<float> samples) {
    std::ranges::copy(bins, plan_->bins.begin());
    plan_->backward.run(samples.data(), plan_->bins.data(), sizeof(std::complex<float>));
}

} // namespace varnic
