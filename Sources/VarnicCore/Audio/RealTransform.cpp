#include "VarnicCore/Audio/RealTransform.h"

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/tx.h>
}

#include <algorithm>
#include <memory>
#include <new>

namespace varnic {

namespace {

struct Free {
    void operator()(void* memory) const { av_free(memory); }
};

/// Memory as FFmpeg's vector code takes it: for any other there is only plain code, at three times the cost.
template <typename Value>
class AlignedArray {
public:
    explicit AlignedArray(std::size_t size)
        : values_(static_cast<Value*>(av_calloc(size, sizeof(Value)))), size_(size) {
        if (values_ == nullptr) {
            throw std::bad_alloc();
        }
    }

    [[nodiscard]] Value* begin() const { return values_.get(); }

    [[nodiscard]] Value* end() const { return values_.get() + size_; }

private:
    std::unique_ptr<Value, Free> values_;
    std::size_t size_;
};

/// One direction of the transform.
class Direction {
public:
    Direction(std::size_t size, bool isBackward) {
        const float scale = isBackward ? 1.0F / static_cast<float>(size) : 1.0F;
        if (av_tx_init(&context_, &run_, AV_TX_FLOAT_RDFT, isBackward ? 1 : 0, static_cast<int>(size), &scale, 0) < 0) {
            throw std::bad_alloc();
        }
    }

    Direction(const Direction&) = delete;
    Direction& operator=(const Direction&) = delete;

    ~Direction() { av_tx_uninit(&context_); }

    /// `stride` is the size of the input's values. The input may be overwritten; both are an AlignedArray's.
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
    AlignedArray<float> samples;
    AlignedArray<std::complex<float>> bins;
};

RealTransform::RealTransform(std::size_t size) : plan_(std::make_shared<Plan>(size)) {}

void RealTransform::forward(std::span<const float> samples, std::span<std::complex<float>> bins) {
    std::ranges::copy(samples, plan_->samples.begin());
    plan_->forward.run(plan_->bins.begin(), plan_->samples.begin(), sizeof(float));
    std::ranges::copy(plan_->bins, bins.begin());
}

void RealTransform::backward(std::span<const std::complex<float>> bins, std::span<float> samples) {
    std::ranges::copy(bins, plan_->bins.begin());
    plan_->backward.run(plan_->samples.begin(), plan_->bins.begin(), sizeof(std::complex<float>));
    std::ranges::copy(plan_->samples, samples.begin());
}

} // namespace varnic
