#include "VarnicCore/Transcript/OverheardLines.h"

#include "VarnicCore/Audio/EchoFreeReader.h"
#include "VarnicCore/Text/TextKit.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>

namespace varnic::OverheardLines {

namespace {

/// A line of whose energy less than this share is left is echo. Removal leaves a hundredth of an echo, and of your own
/// words over one nearly all.
constexpr double mostLeft = 0.1;
/// The same of a line in the very words that they say meanwhile. Where the room is noisy, or the way to the microphone
/// has just changed, more of an echo is left, and bits of it are still transcribed.
constexpr double mostLeftOfTheirWords = 0.5;
constexpr std::size_t leastWords = 3;
/// What is read before a line, in seconds: longer than echoes are late.
constexpr double lead = 1;

std::int64_t frameAt(double seconds) {
    return std::llround(seconds * EchoRemoval::rate);
}

/// The energy of a line's audio.
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

std::vector<Segment> spokenMeanwhile(const Segment& line, const std::vector<Segment>& transcript) {
    std::vector<Segment> theirs;
    std::ranges::copy_if(transcript, std::back_inserter(theirs), [&line](const Segment& other) {
        return other.speaker == Speaker::them && Diarisation::overlapsAsEcho(line, other);
    });
    return theirs;
}

/// Whether a line is a bit of another: all its words stand there in their order, with no more words between them than
/// there are of them. What is shorter than three words anybody says over anything.
bool isBitOf(const Segment& line, const Segment& other) {
    const std::vector<std::string> words = TextKit::words(line.text);
    const std::vector<std::string> theirs = TextKit::words(other.text);
    if (words.size() < leastWords) {
        return false;
    }
    for (std::size_t first = 0; first < theirs.size(); ++first) {
        auto next = words.begin();
        for (const std::string& word :
             std::span(theirs).subspan(first, std::min(2 * words.size(), theirs.size() - first))) {
            next += next != words.end() && *next == word ? 1 : 0;
        }
        if (next == words.end()) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<Segment> remove(std::vector<Segment> transcript, const std::filesystem::path& you,
                            const std::filesystem::path& them, const std::function<void()>& reading) {
    std::vector<Segment> doubtful;
    std::ranges::copy_if(transcript, std::back_inserter(doubtful), [&](const Segment& line) {
        return line.speaker == Speaker::you && !spokenMeanwhile(line, transcript).empty();
    });
    if (doubtful.empty()) {
        return transcript;
    }
    AudioReader heard = AudioReader::openMono(you, EchoRemoval::rate);
    EchoFreeReader echoFree(you, them, EchoFreeReader::learn(you, them, reading));
    std::erase_if(doubtful, [&](const Segment& line) {
        const bool isTheirWords = std::ranges::any_of(spokenMeanwhile(line, transcript),
                                                      [&line](const Segment& other) { return isBitOf(line, other); });
        return energy(echoFree, line, reading) >
               (isTheirWords ? mostLeftOfTheirWords : mostLeft) * energy(heard, line, reading);
    });
    std::erase_if(transcript, [&](const Segment& line) { return std::ranges::find(doubtful, line) != doubtful.end(); });
    return transcript;
}

} // namespace varnic::OverheardLines
