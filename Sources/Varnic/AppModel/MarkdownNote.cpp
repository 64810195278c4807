#include "Varnic/AppModel/MarkdownNote.h"

#include "VarnicCore/Files/UserFile.h"
#include "VarnicCore/Text/Unicode.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <simdjson.h>

#include <stdexcept>
#include <utility>

namespace varnic {

namespace {

constexpr std::string_view byteOrderMark = "\uFEFF";

/// The text without what is no UTF-8, which a file's name may hold and a note may not.
std::string wellFormed(const std::filesystem::path& name) {
    return Unicode::utf8(Unicode::utf16(name.string()));
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

} // namespace

bool MarkdownNote::isNamedSo(const std::filesystem::path& file) {
    const std::string extension = Unicode::lowerCased(wellFormed(file.extension()));
    return extension == ".md" || extension == ".markdown";
}

MarkdownNote MarkdownNote::read(const std::filesystem::path& file, const Region& region) {
    const std::string bytes = UserFile::read(file);
    if (!simdjson::validate_utf8(bytes)) {
        throw std::runtime_error(fmt::format("“{}” isn’t UTF-8 text.", file.filename().string()));
    }
    std::string_view text = bytes;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    MarkdownFile::Contents contents = MarkdownFile::read(text, region);
    return {.title = contents.title.value_or(wellFormed(file.stem())),
            .created = contents.created ? *contents.created : UserFile::modifiedAt(file),
            .blocks = std::move(contents.blocks),
            .simplified = contents.simplified};
}

std::string MarkdownNote::described(const MarkdownFile::Simplified& simplified) {
    std::vector<std::string> parts;
    if (simplified.nestedItems > 0) {
        parts.push_back(counted(simplified.nestedItems, "item of a list in a list is an item of one list now",
                                "items of lists in lists are items of one list now"));
    }
    if (simplified.codeLines > 0) {
        parts.push_back(counted(simplified.codeLines, "line of code has lost its indentation",
                                "lines of code have lost their indentation"));
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

} // namespace varnic
