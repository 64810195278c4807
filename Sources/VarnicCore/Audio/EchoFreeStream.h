#pragma once

#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicCore/Audio/EchoRemoval.h"
#include "VarnicCore/Audio/SampleConverter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace varnic {

/// The microphone's sound of a running call without what it overhears of the other side. The two sides may come in
/// pieces of any length, one a little later than the other, and with gaps. One thread.
class EchoFreeStream {
public:
    /// Takes the microphone's sound, one channel at EchoRemoval::rate, and the call's time in seconds at which it
    /// begins.
    using Deliver = std::function<void(const PcmBuffer&, double at)>;

    explicit EchoFreeStream(Deliver deliver) : deliver_(std::move(deliver)) {}

    /// The next sound of a side, in the processing format, from `at` seconds of the call. The microphone's comes out
    /// when the other side's of the same time is there, or after a moment without it. Throws what `deliver` throws.
    void add(Speaker speaker, const PcmBuffer& buffer, double at);

    /// Gives what is still inside. More may follow.
    void finish();

private:
    /// A side's sound that is not used yet. Positions are samples since the call began.
    class Side {
    public:
        [[nodiscard]] std::int64_t start() const { return start_; }

        [[nodiscard]] std::int64_t end() const { return start_ + static_cast<std::int64_t>(samples_.size()); }

        /// Whether sound of this time does not follow on what came before.
        [[nodiscard]] bool leaps(double at) const;
        /// Gets all out of the converter: the sound is interrupted.
        void pause();
        /// The sound goes on at this time; what is missing before it is silence.
        void resume(double at);
        void add(const PcmBuffer& buffer);
        /// The block at a position, silent where there is no sound. Forgets the sound up to its end.
        EchoFilter::Block take(std::int64_t position);
        /// Forgets all but the last samples.
        void keep(std::int64_t most);

    private:
        void forget(std::int64_t before);

        std::optional<SampleConverter> converter_;
        PcmBuffer converted_;
        std::vector<float> samples_;
        std::int64_t start_ = 0;
        /// The call's time in seconds up to which sound has come.
        double fed_ = 0;
    };

    void clean(std::int64_t position);

    Deliver deliver_;
    EchoRemoval removal_;
    Side you_;
    Side them_;
    /// Blocks of the microphone that are on their way through `removal_`.
    std::size_t held_ = 0;
};

} // namespace varnic
