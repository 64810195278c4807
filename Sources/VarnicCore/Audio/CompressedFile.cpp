#include "VarnicCore/Audio/AacEncoder.h"
#include "VarnicCore/Audio/AppendedFile.h"
#include "VarnicCore/Audio/Mp4Boxes.h"
#include "VarnicCore/Audio/SoundFile.h"
#include "VarnicCore/Files/LibraryError.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

namespace varnic {

namespace {

using Clock = std::chrono::steady_clock;

/// Each second's fragment of a recording goes to the disk at once. Audio that comes faster, and a disk that is slow,
/// are not held up by that for more than a part of the time.
constexpr std::chrono::milliseconds leastBetweenSyncs{500};
constexpr int syncsShare = 4;

class CompressedFile final : public SoundFile {
public:
    CompressedFile(const std::filesystem::path& path, AudioFormat format, int bitRate)
        : encoder_(format, bitRate), file_(AppendedFile::create(path)) {
        file_.append(Mp4::head(encoder_.track()));
    }

    /// A fragment that is due goes to the file before anything new is taken: so a full disk stops the intake, and the
    /// audio that waits is at most that second and one piece.
    void write(const PcmBuffer& sound) override {
        if (framesOf(waiting_) >= encoder_.track().rate) {
            writeFragment();
        }
        encoder_.encode(sound, waiting_, bytes_);
    }

    void close() override {
        if (!finished_) {
            encoder_.finish(waiting_, bytes_);
            finished_ = true;
        }
        if (!waiting_.empty()) {
            writeFragment();
        }
        if (!closed_) {
            writeIndex();
            closed_ = true;
        }
    }

private:
    static std::int64_t framesOf(const std::vector<Mp4::Packet>& packets) {
        std::int64_t sum = 0;
        for (const Mp4::Packet& packet : packets) {
            sum += packet.frames;
        }
        return sum;
    }

    void writeFragment() {
        file_.append(Mp4::fragment(static_cast<std::uint32_t>(chunks_.size() + 1), framesWritten_, waiting_, bytes_));
        chunks_.push_back(
            {file_.size() - static_cast<std::int64_t>(bytes_.size()), static_cast<std::uint32_t>(waiting_.size())});
        framesWritten_ += framesOf(waiting_);
        packets_.insert(packets_.end(), waiting_.begin(), waiting_.end());
        waiting_.clear();
        bytes_.clear();
        syncWhenDue();
    }

    /// A disk that fails may take its time for that too.
    void syncWhenDue() {
        const auto began = Clock::now();
        if (began < nextSync_) {
            return;
        }
        const auto pace = [&] {
            const auto ended = Clock::now();
            nextSync_ = ended + std::max<Clock::duration>(leastBetweenSyncs, (syncsShare - 1) * (ended - began));
        };
        try {
            file_.sync();
        } catch (const LibraryError&) {
            pace();
            throw;
        }
        pace();
    }

    /// Makes an ordinary file of the fragments. Where there is no room for that it stays one of fragments, which plays
    /// as well.
    void writeIndex() {
        const std::int64_t end = file_.size();
        try {
            file_.append(Mp4::index(encoder_.track(), packets_, chunks_));
        } catch (const LibraryError&) {
            file_.sync();
            return;
        }
        file_.sync(); // before anything points at the index
        file_.overwrite(Mp4::coverOffset, Mp4::cover(end));
        file_.sync();
    }

    AacEncoder encoder_;
    AppendedFile file_;
    /// What the encoder gave since the last fragment.
    std::vector<Mp4::Packet> waiting_;
    Bytes bytes_;
    /// What is in the file; some 200 bytes a second.
    std::vector<Mp4::Packet> packets_;
    std::vector<Mp4::Chunk> chunks_;
    std::int64_t framesWritten_ = 0;
    Clock::time_point nextSync_;
    bool finished_ = false;
    bool closed_ = false;
};

} // namespace

std::unique_ptr<SoundFile> SoundFile::createCompressed(const std::filesystem::path& path, AudioFormat format,
                                                       int bitRate) {
    return std::make_unique<CompressedFile>(path, format, bitRate);
}

} // namespace varnic
