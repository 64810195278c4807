#include "VarnicCore/Audio/EchoFreeReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace varnic {

namespace {

/// Seconds of the far end after which its echo is known, and of the call that are searched for them.
constexpr double enough = 10;
constexpr std::int64_t searched = std::int64_t{300} * EchoRemoval::rate;
/// Seconds before and after a moment that tell whether there is an echo then.
constexpr double before = 12;
constexpr double after = 8;

} // namespace

TrackBlocks::TrackBlocks(const std::filesystem::path& file) : reader_(AudioReader::openMono(file, EchoRemoval::rate)) {}

std::size_t TrackBlocks::read(EchoFilter::Block& block) {
    std::size_t filled = 0;
    while (filled < block.size()) {
        if (next_ == buffer_.frames()) {
            next_ = 0;
            if (!reader_.read(buffer_)) {
                break;
            }
        }
        const std::size_t count = std::min(block.size() - filled, buffer_.frames() - next_);
        std::copy_n(buffer_.channels.front().begin() + static_cast<std::ptrdiff_t>(next_), count,
                    block.begin() + static_cast<std::ptrdiff_t>(filled));
        filled += count;
        next_ += count;
    }
    std::fill(block.begin() + static_cast<std::ptrdiff_t>(filled), block.end(), 0.0F);
    return filled;
}

void TrackBlocks::seek(std::int64_t sample) {
    reader_.seek(sample);
    buffer_ = {};
    next_ = 0;
}

EchoRemoval EchoFreeReader::learn(const std::filesystem::path& you, const std::filesystem::path& them,
                                  const std::function<void()>& reading) {
    EchoFreeReader reader(you, them, EchoRemoval());
    PcmBuffer ignored;
    while (reader.removal_.learnt() < enough && reader.taken_ < searched && reader.read(ignored)) {
        reading();
    }
    reader.removal_.interrupt();
    return std::move(reader.removal_);
}

bool EchoFreeReader::hasEcho(const std::filesystem::path& you, const std::filesystem::path& them, double around,
                             const std::function<void()>& reading) {
    EchoFreeReader reader(you, them, EchoRemoval());
    reader.seek(std::llround(std::max(around - before, 0.0) * EchoRemoval::rate));
    constexpr auto samples = static_cast<std::int64_t>((before + after) * EchoRemoval::rate);
    PcmBuffer ignored;
    while (!reader.removal_.hasEcho() && reader.taken_ < samples && reader.read(ignored)) {
        reading();
    }
    return reader.removal_.hasEcho();
}

EchoFreeReader::EchoFreeReader(const std::filesystem::path& you, const std::filesystem::path& them, EchoRemoval removal)
    : you_(you), them_(them), removal_(std::move(removal)) {}

bool EchoFreeReader::read(PcmBuffer& buffer) {
    EchoFilter::Block you;
    EchoFilter::Block them;
    do {
        taken_ += static_cast<std::int64_t>(you_.read(you));
        them_.read(them);
        you = removal_.clean(them, you);
    } while (held_++ < EchoRemoval::lag);
    const auto count = static_cast<std::size_t>(std::min<std::int64_t>(taken_ - given_, EchoRemoval::block));
    given_ += static_cast<std::int64_t>(count);
    buffer.rate = EchoRemoval::rate;
    buffer.channels.resize(1);
    buffer.channels.front().assign(you.begin(), you.begin() + static_cast<std::ptrdiff_t>(count));
    return count > 0;
}

void EchoFreeReader::seek(std::int64_t sample) {
    you_.seek(sample);
    them_.seek(sample);
    removal_.interrupt();
    held_ = 0;
    taken_ = given_ = 0;
}

} // namespace varnic
