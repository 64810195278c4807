#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

struct DFState;

namespace varnic {

/// Takes noise out of speech with DeepFilterNet, where that is installed. Movable; one thread at a time.
class NoiseReduction {
public:
    /// Samples a second of what it takes and gives.
    static constexpr int rate = 16'000;

    /// Its network, "varnic/noise/DeepFilterNet3_onnx.tar.gz" under the first directory that has it.
    static std::optional<std::filesystem::path> network(const std::vector<std::filesystem::path>& dataDirectories);

    /// Nothing where there is no library: "libdeepfilter.so" lies beside the network or where the linker looks. Given a
    /// network that is damaged or of another kind it ends the process: ask ModelCheck::isUsable first.
    static std::optional<NoiseReduction> create(const std::filesystem::path& network);

    /// The same sound, as long and each of its moments in its place, with less noise. What was learnt of the noise
    /// stays for the samples that follow. Takes about 0.07 s a second and memory for some copies of the samples.
    std::vector<float> clean(std::span<const float> samples);

private:
    /// The library's functions. It stays loaded for as long as the process runs.
    struct Library {
        DFState* (*create)(const char* network, float mostDecibels, const char* logLevel);
        std::size_t (*frameLength)(DFState* state);
        float (*process)(DFState* state, float* in, float* out);
        void (*free)(DFState* state);

        static std::optional<Library> load(const std::filesystem::path& folder);
    };

    using State = std::unique_ptr<DFState, void (*)(DFState*)>;

    NoiseReduction(Library library, State state) : library_(library), state_(std::move(state)) {}

    Library library_;
    State state_;
};

} // namespace varnic
