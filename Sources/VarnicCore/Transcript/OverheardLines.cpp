#include "VarnicCore/Transcript/OverheardLines.h"

#include "VarnicCore/Audio/EchoFreeReader.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <span>

namespace varnic::OverheardLines {

namespace {

/// A line of whose energy less than this share is left is echo. Removal leaves a hundredth of an echo, and of your own
/// words over one nearly all.
constexpr double mostLeft = 0.1;
/// What is read before a line, in seconds: longer than echoes are late.
constexpr double lead = 1;

std::int64_t frameAt(double seconds) {
    return std::llround(seconds * EchoRemoval::rate);
}

/// The energy of a line's sound.
template <typename Reader>
double energy(Reader& reader, const Segment& line, const std::function<void()>& reading) {
    const std::int64_t first = frameAt(line.start);
    const std::int64_t last = frameAt(line.end);
    std::int64_t position = std::max<std::int64_t>(frameAt(line.start - lead), 0);
    reader.seek(position);
    double sum = 0;
    for (PcmBuffer block; position < last && reader.read(block); position += std::ssize(block.channels.front())) {
        reading();
        const std::span<const float> samples = block.channels.front();
        const auto from = std::clamp<std::int64_t>(first - position, 0, std::ssize(samples));
        const auto to = std::clamp<std::int64_t>(last - position, from, std::ssize(samples));
        sum += EchoFilter::energy(samples.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
    }
    return sum;
}

bool isSpokenOver(const Segment& line, const std::vector<Segment>& transcript) {
    return line.speaker == Speaker::you && std::ranges::any_of(transcript, [&](const Segment& other) {
               return other.speaker == Speaker::them && Diarisation::overlapsAsEcho(line, other);
           });
}

} // namespace

std::vector<Segment> remove(std::vector<Segment> transcript, const std::filesystem::path& you,
                            const std::filesystem::path& them, const std::function<void()>& reading) {
    std::vector<Segment> doubtful;
    std::ranges::copy_if(transcript, std::back_inserter(doubtful),
                         [&](const Segment& line) { return isSpokenOver(line, transcript); });
    if (doubtful.empty()) {
        return transcript;
    }
    AudioReader heard = AudioReader::openMono(you, EchoRemoval::rate);
    EchoFreeReader echoFree(you, them, EchoFreeReader::learn(you, them, reading));
    std::erase_if(doubtful, [&](const Segment& line) {
        return energy(echoFree, line, reading) > mostLeft * energy(heard, line, reading);
    });
    std::erase_if(transcript, [&](const Segment& line) { return std::ranges::find(doubtful, line) != doubtful.end(); });
    return transcript;
}

} // namespace varnic::OverheardLines
