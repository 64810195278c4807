#include "VarnicCore/Audio/Resampler.h"

#include "VarnicCore/Audio/SampleConverter.h"
#include "VarnicCore/Audio/TranscriberError.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

namespace varnic {

PcmBuffer Resampler::convert(const PcmBuffer& buffer) const {
    if (buffer.format() == target) {
        return buffer;
    }
    if (buffer.frames() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw TranscriberError::failed("buffer");
    }
    try {
        const AudioFormat from = buffer.format();
        SampleConverter converter({AV_SAMPLE_FMT_FLTP, from.rate, Ffmpeg::Layout::ofChannels(from.channels)}, target);
        std::vector<const std::uint8_t*> rows;
        for (const std::vector<float>& row : buffer.channels) {
            rows.push_back(reinterpret_cast<const std::uint8_t*>(row.data()));
        }
        PcmBuffer result;
        converter.convert(rows.data(), static_cast<int>(buffer.frames()), result);
        converter.finish(result);
        return result;
    } catch (const std::invalid_argument&) {
        throw TranscriberError::failed("format");
    }
}

} // namespace varnic
