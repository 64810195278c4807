#include "VarnicPlatform/Speech/NoiseReduction.h"

#include "VarnicCore/Audio/PcmBuffer.h"
#include "VarnicCore/Audio/Resampler.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace varnic {

namespace fs = std::filesystem;

namespace {

constexpr const char* libraryName = "libdeepfilter.so";
/// What the library takes.
constexpr AudioFormat inside = TrackFormat::processing;
/// By so many of the library's frames the sound comes out late: one for the overlap of its windows, two that the
/// network looks ahead. Measured by correlation with what went in, exactly so for speech, white and low noise.
constexpr std::size_t delay = 3;
/// How far noise is attenuated at most, in decibels. Recognisers hear more in speech that a little of its noise is left
/// of: Moonshine tiny got of 119 words, read over white noise and over noise below 400 Hz, 5 dB below the speech and as
/// loud, in eight mixes 17.2 % wrong, after attenuation by 9 dB 14.2 %, 12 dB 12.7 %, 18 dB 13.9 %, 100 dB 14.7 %. The
/// less is taken away, the less harm is done where the noise is other voices.
constexpr float most = 12;

/// A function of a loaded library.
template <typename Function>
bool find(void* library, const char* name, Function*& function) {
    function = reinterpret_cast<Function*>(::dlsym(library, name));
    return function != nullptr;
}

PcmBuffer bufferOf(std::vector<float> samples, int rate) {
    PcmBuffer buffer;
    buffer.rate = rate;
    buffer.channels.push_back(std::move(samples));
    return buffer;
}

} // namespace

std::optional<fs::path> NoiseReduction::network(const std::vector<fs::path>& dataDirectories) {
    for (const fs::path& directory : dataDirectories) {
        fs::path file = directory / "varnic/noise/DeepFilterNet3_onnx.tar.gz";
        std::error_code error;
        if (fs::is_regular_file(file, error)) {
            return file;
        }
    }
    return std::nullopt;
}

std::optional<NoiseReduction::Library> NoiseReduction::Library::load(const fs::path& folder) {
    std::error_code error;
    const fs::path beside = folder / libraryName;
    const std::string name = fs::exists(beside, error) ? beside.string() : libraryName;
    // It keeps data of each thread, so it can't be unloaded.
    void* const library = ::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    Library functions{};
    if (library == nullptr || !find(library, "df_create", functions.create) ||
        !find(library, "df_get_frame_length", functions.frameLength) ||
        !find(library, "df_process_frame", functions.process) || !find(library, "df_free", functions.free)) {
        return std::nullopt;
    }
    return functions;
}

std::optional<NoiseReduction> NoiseReduction::create(const fs::path& network) {
    const std::optional<Library> library = Library::load(network.parent_path());
    if (!library) {
        return std::nullopt;
    }
    State state(library->create(network.c_str(), most, nullptr), library->free);
    return state == nullptr ? std::nullopt : std::optional(NoiseReduction(*library, std::move(state)));
}

std::vector<float> NoiseReduction::clean(std::span<const float> samples) {
    if (samples.empty()) {
        return {};
    }
    PcmBuffer wide = Resampler{inside}.convert(bufferOf({samples.begin(), samples.end()}, rate));
    std::vector<float>& in = wide.channels.front();
    const std::size_t length = in.size();
    const std::size_t frame = library_.frameLength(state_.get());
    in.resize((length + frame - 1) / frame * frame + delay * frame);
    std::vector<float> out(in.size());
    for (std::size_t index = 0; index < in.size(); index += frame) {
        library_.process(state_.get(), in.data() + index, out.data() + index);
    }
    const auto begin = out.begin() + static_cast<std::ptrdiff_t>(delay * frame);
    std::ranges::copy_n(begin, static_cast<std::ptrdiff_t>(length), in.begin());
    in.resize(length);
    PcmBuffer narrow = Resampler{{.rate = rate, .channels = 1}}.convert(wide);
    narrow.channels.front().resize(samples.size());
    return std::move(narrow.channels.front());
}

} // namespace varnic
