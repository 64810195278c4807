#include "VarnicCore/Text/Unicode.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

using namespace varnic;

namespace {

namespace fs = std::filesystem;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void write(const fs::path& file, std::string_view text) {
    std::ofstream(file, std::ios::binary) << text;
}

/// A data folder of this process, in memory where the system has such a place, with a model that has files but no
/// manifest.
fs::path makeFolder() {
    const char* const memory = fs::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    std::string name = std::string(memory) + "/fuzz-manifest-XXXXXX";
    require(::mkdtemp(name.data()) != nullptr);
    const fs::path model = fs::path(name) / "varnic/models/m";
    fs::create_directories(model / "sub");
    for (const char* file : {"e", "d", "j", "t", "sub/e", "../outside"}) {
        write(model / file, "x");
    }
    return name;
}

/// What a user can be shown in a line.
bool isSentence(const std::string& text) {
    constexpr std::size_t most = 500;
    return !text.empty() && text.size() <= most && Unicode::utf8(Unicode::utf16(text)) == text &&
           std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

void requireUsable(const SpeechModel& model) {
    require(!model.id.empty() && !model.name.empty() && !model.locales.empty() && model.segments().speech > 0);
    require(ModelChoice::from(model.id).id == model.id);
    for (const auto& [role, file] : model.files) {
        const fs::path inside = fs::weakly_canonical(file).lexically_relative(fs::canonical(model.folder));
        require(*inside.begin() != ".." && fs::is_regular_file(file));
    }
    require(model.bytes == model.files.size());
    const auto chosen = SpeechModels::choose({model}, model.locales.front(), {});
    require(!chosen || *chosen == model);
}

} // namespace

/// Any bytes are the manifest of a model that can be used, or one sentence says why they are not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path folder = makeFolder();
    write(folder / "varnic/models/m/model.json", {reinterpret_cast<const char*>(data), size});
    std::vector<SpeechModels::Skipped> skipped;
    const std::vector<SpeechModel> models = SpeechModels::installed({folder}, &skipped);
    require(models.size() + skipped.size() == 1);
    for (const SpeechModel& model : models) {
        requireUsable(model);
    }
    for (const SpeechModels::Skipped& broken : skipped) {
        require(isSentence(broken.reason));
    }
    return 0;
}
