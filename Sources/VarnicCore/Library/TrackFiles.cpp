#include "VarnicCore/Library/TrackFiles.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <system_error>
#include <utility>

namespace varnic::TrackFiles {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 4> usualForms{".m4a", ".caf", ".wav", ".aiff"};

/// The sort key of a file: the usual forms in their order, then by path.
std::pair<std::size_t, fs::path> rank(const fs::path& file) {
    const auto form = std::ranges::find(usualForms, file.extension().native());
    return {static_cast<std::size_t>(form - usualForms.begin()), file};
}

} // namespace

std::vector<fs::path> of(const std::vector<fs::path>& entries, Speaker speaker) {
    std::vector<fs::path> files;
    std::ranges::copy_if(entries, std::back_inserter(files), [speaker](const fs::path& entry) {
        std::error_code ignored;
        return entry.stem() == rawValue(speaker) && fs::is_regular_file(entry, ignored);
    });
    std::ranges::sort(files, {}, rank);
    return files;
}

} // namespace varnic::TrackFiles
