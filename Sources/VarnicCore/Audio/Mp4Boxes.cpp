#include "VarnicCore/Audio/Mp4Boxes.h"

#include <algorithm>
#include <numeric>
#include <string_view>

namespace varnic::Mp4 {

namespace {

/// The matrix of a picture that is not turned, which audio tracks have too.
constexpr std::uint32_t unity = 0x00010000;
constexpr std::uint32_t trackId = 1;

/// Appends big-endian numbers and boxes, each with its length in front.
class BoxWriter {
public:
    template <typename Number>
    void number(Number value) {
        for (int shift = 8 * (static_cast<int>(sizeof(Number)) - 1); shift >= 0; shift -= 8) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }

    void u8(std::uint8_t value) { bytes_.push_back(value); }

    void u16(std::uint16_t value) { number(value); }

    void u32(std::uint32_t value) { number(value); }

    void u64(std::uint64_t value) { number(value); }

    void zeros(std::size_t count) { bytes_.insert(bytes_.end(), count, 0); }

    void text(std::string_view value) { bytes_.insert(bytes_.end(), value.begin(), value.end()); }

    void raw(std::span<const std::uint8_t> value) { bytes_.insert(bytes_.end(), value.begin(), value.end()); }

    template <typename Content>
    void box(std::string_view type, Content content) {
        const std::size_t start = bytes_.size();
        u32(0);
        text(type);
        content();
        patch32(start, static_cast<std::uint32_t>(bytes_.size() - start));
    }

    /// A box that begins with a version and flags.
    template <typename Content>
    void fullBox(std::string_view type, std::uint8_t version, std::uint32_t flags, Content content) {
        box(type, [&] {
            u32(static_cast<std::uint32_t>(version) << 24 | flags);
            content();
        });
    }

    /// A descriptor of MPEG-4 systems; its content is shorter than 128 bytes.
    template <typename Content>
    void descriptor(std::uint8_t tag, Content content) {
        u8(tag);
        const std::size_t length = bytes_.size();
        u8(0);
        content();
        bytes_[length] = static_cast<std::uint8_t>(bytes_.size() - length - 1);
    }

    void patch32(std::size_t at, std::uint32_t value) {
        for (std::size_t byte = 0; byte < 4; ++byte) {
            bytes_[at + byte] = static_cast<std::uint8_t>(value >> (24 - 8 * byte));
        }
    }

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

    Bytes take() { return std::move(bytes_); }

private:
    Bytes bytes_;
};

std::uint64_t framesOf(std::span<const Packet> packets) {
    return std::accumulate(packets.begin(), packets.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const Packet& packet) { return sum + packet.frames; });
}

void matrix(BoxWriter& out) {
    for (const std::uint32_t value : {unity, 0U, 0U, 0U, unity, 0U, 0U, 0U, 0x40000000U}) {
        out.u32(value);
    }
}

void writeMovieHeader(BoxWriter& out, const Track& track, std::uint64_t duration) {
    out.fullBox("mvhd", 1, 0, [&] {
        out.zeros(16); // dates of creation and change
        out.u32(static_cast<std::uint32_t>(track.rate));
        out.u64(duration);
        out.u32(unity);   // speed
        out.u16(0x0100);  // volume
        out.zeros(2 + 8); // reserved
        matrix(out);
        out.zeros(24);
        out.u32(trackId + 1);
    });
}

void writeTrackHeader(BoxWriter& out, std::uint64_t duration) {
    constexpr std::uint32_t enabledInMovieAndPreview = 7;
    out.fullBox("tkhd", 1, enabledInMovieAndPreview, [&] {
        out.zeros(16);
        out.u32(trackId);
        out.zeros(4);
        out.u64(duration);
        out.zeros(8 + 2 + 2);
        out.u16(0x0100); // volume
        out.zeros(2);
        matrix(out);
        out.zeros(8); // width and height
    });
}

/// Begins the track behind the encoder's delay; a duration of 0 is that of all fragments.
void writeEditList(BoxWriter& out, const Track& track, std::uint64_t duration) {
    out.box("edts", [&] {
        out.fullBox("elst", 1, 0, [&] {
            out.u32(1);
            out.u64(duration);
            out.u64(static_cast<std::uint64_t>(track.delay));
            out.u32(unity);
        });
    });
}

void writeDecoderConfig(BoxWriter& out, const Track& track) {
    constexpr std::uint8_t aac = 0x40;
    constexpr std::uint8_t soundStream = 0x15;
    out.fullBox("esds", 0, 0, [&] {
        out.descriptor(3, [&] {
            out.u16(trackId);
            out.u8(0);
            out.descriptor(4, [&] {
                out.u8(aac);
                out.u8(soundStream);
                out.zeros(3);
                out.u32(static_cast<std::uint32_t>(track.bitRate));
                out.u32(static_cast<std::uint32_t>(track.bitRate));
                out.descriptor(5, [&] { out.raw(track.config); });
            });
            out.descriptor(6, [&] { out.u8(2); });
        });
    });
}

void writeSampleEntry(BoxWriter& out, const Track& track) {
    out.fullBox("stsd", 0, 0, [&] {
        out.u32(1);
        out.box("mp4a", [&] {
            out.zeros(6);
            out.u16(1); // the data reference
            out.zeros(8);
            out.u16(static_cast<std::uint16_t>(track.channels));
            out.u16(16); // bits a sample, whatever the codec
            out.zeros(4);
            out.u32(static_cast<std::uint32_t>(track.rate) << 16);
            writeDecoderConfig(out, track);
        });
    });
}

/// How long the packets last, equal neighbours together.
void writeDurations(BoxWriter& out, std::span<const Packet> packets) {
    out.fullBox("stts", 0, 0, [&] {
        const std::size_t count = out.size();
        out.u32(0);
        std::uint32_t runs = 0;
        for (auto run = packets.begin(); run != packets.end(); ++runs) {
            const auto end =
                std::find_if(run, packets.end(), [run](const Packet& packet) { return packet.frames != run->frames; });
            out.u32(static_cast<std::uint32_t>(end - run));
            out.u32(run->frames);
            run = end;
        }
        out.patch32(count, runs);
    });
}

/// How many packets stand in each chunk, and where the chunks are.
void writeChunks(BoxWriter& out, std::span<const Chunk> chunks) {
    out.fullBox("stsc", 0, 0, [&] {
        out.u32(static_cast<std::uint32_t>(chunks.size()));
        for (std::size_t chunk = 0; chunk < chunks.size(); ++chunk) {
            out.u32(static_cast<std::uint32_t>(chunk + 1));
            out.u32(chunks[chunk].packets);
            out.u32(1); // the sample entry
        }
    });
    out.fullBox("co64", 0, 0, [&] {
        out.u32(static_cast<std::uint32_t>(chunks.size()));
        for (const Chunk& chunk : chunks) {
            out.u64(static_cast<std::uint64_t>(chunk.offset));
        }
    });
}

void writeSizes(BoxWriter& out, std::span<const Packet> packets) {
    out.fullBox("stsz", 0, 0, [&] {
        out.u32(0); // they differ
        out.u32(static_cast<std::uint32_t>(packets.size()));
        for (const Packet& packet : packets) {
            out.u32(packet.size);
        }
    });
}

void writeMedia(BoxWriter& out, const Track& track, std::span<const Packet> packets, std::span<const Chunk> chunks) {
    out.fullBox("mdhd", 1, 0, [&] {
        out.zeros(16);
        out.u32(static_cast<std::uint32_t>(track.rate));
        out.u64(framesOf(packets));
        out.u16(0x55C4); // language "und"
        out.zeros(2);
    });
    out.fullBox("hdlr", 0, 0, [&] {
        out.zeros(4);
        out.text("soun");
        out.zeros(12 + 1);
    });
    out.box("minf", [&] {
        out.fullBox("smhd", 0, 0, [&] { out.zeros(4); });
        out.box("dinf", [&] {
            out.fullBox("dref", 0, 0, [&] {
                out.u32(1);
                constexpr std::uint32_t inThisFile = 1;
                out.fullBox("url ", 0, inThisFile, [] {});
            });
        });
        out.box("stbl", [&] {
            writeSampleEntry(out, track);
            writeDurations(out, packets);
            writeSizes(out, packets);
            writeChunks(out, chunks);
        });
    });
}

void writeMovie(BoxWriter& out, const Track& track, std::span<const Packet> packets, std::span<const Chunk> chunks,
                bool fragments) {
    const std::uint64_t frames = framesOf(packets);
    const std::uint64_t duration = frames - std::min<std::uint64_t>(frames, static_cast<std::uint64_t>(track.delay));
    out.box("moov", [&] {
        writeMovieHeader(out, track, duration);
        out.box("trak", [&] {
            writeTrackHeader(out, duration);
            writeEditList(out, track, duration);
            out.box("mdia", [&] { writeMedia(out, track, packets, chunks); });
        });
        if (fragments) {
            out.box("mvex", [&] {
                out.fullBox("trex", 0, 0, [&] {
                    out.u32(trackId);
                    out.u32(1); // the sample entry
                    out.zeros(12);
                });
            });
        }
    });
}

} // namespace

Bytes head(const Track& track) {
    BoxWriter out;
    out.box("ftyp", [&] {
        out.text("M4A ");
        out.u32(0);
        out.text("M4A iso5");
    });
    out.box("free", [&] { out.zeros(8); });
    writeMovie(out, track, {}, {}, true);
    return out.take();
}

Bytes fragment(std::uint32_t number, std::int64_t framesBefore, std::span<const Packet> packets,
               std::span<const std::uint8_t> sound) {
    BoxWriter out;
    std::size_t soundOffset = 0;
    out.box("moof", [&] {
        out.fullBox("mfhd", 0, 0, [&] { out.u32(number); });
        out.box("traf", [&] {
            constexpr std::uint32_t offsetsFromHere = 0x020000;
            out.fullBox("tfhd", 0, offsetsFromHere, [&] { out.u32(trackId); });
            out.fullBox("tfdt", 1, 0, [&] { out.u64(static_cast<std::uint64_t>(framesBefore)); });
            constexpr std::uint32_t withOffsetDurationsAndSizes = 0x000301;
            out.fullBox("trun", 0, withOffsetDurationsAndSizes, [&] {
                out.u32(static_cast<std::uint32_t>(packets.size()));
                soundOffset = out.size();
                out.u32(0);
                for (const Packet& packet : packets) {
                    out.u32(packet.frames);
                    out.u32(packet.size);
                }
            });
        });
    });
    constexpr std::size_t boxHead = 8;
    out.patch32(soundOffset, static_cast<std::uint32_t>(out.size() + boxHead));
    out.box("mdat", [&] { out.raw(sound); });
    return out.take();
}

Bytes index(const Track& track, std::span<const Packet> packets, std::span<const Chunk> chunks) {
    BoxWriter out;
    writeMovie(out, track, packets, chunks, false);
    return out.take();
}

Bytes cover(std::int64_t end) {
    BoxWriter out;
    out.u32(1); // the length follows the type
    out.text("mdat");
    out.u64(static_cast<std::uint64_t>(end - coverOffset));
    return out.take();
}

} // namespace varnic::Mp4
