#include "BrevinKit/Bundle/BundleInfo.h"

#include <pugixml.hpp>

#include <sstream>
#include <system_error>
#include <utility>

namespace brevin {

namespace {

namespace fs = std::filesystem;

/// Bytes. A longer file is no property list of a bundle.
constexpr std::uintmax_t longest = 1024UL * 1024UL;

std::optional<std::string> textUnder(const pugi::xml_node& dictionary, const char* key) {
    for (const pugi::xml_node& node : dictionary.children("key")) {
        const pugi::xml_node value = node.next_sibling();
        if (std::string_view(node.child_value()) == key && std::string_view(value.name()) == "string") {
            return value.child_value();
        }
    }
    return std::nullopt;
}

void add(pugi::xml_node dictionary, const char* key, const std::string& value) {
    dictionary.append_child("key").text().set(key);
    dictionary.append_child("string").text().set(value.c_str());
}

} // namespace

std::optional<BundleInfo> BundleInfo::read(const fs::path& propertyList) {
    std::error_code error;
    pugi::xml_document document;
    if (!fs::is_regular_file(propertyList, error) || fs::file_size(propertyList, error) > longest ||
        !document.load_file(propertyList.c_str())) {
        return std::nullopt;
    }
    const pugi::xml_node dictionary = document.child("plist").child("dict");
    if (!dictionary) {
        return std::nullopt;
    }
    BundleInfo info;
    info.identifier = textUnder(dictionary, "CFBundleIdentifier").value_or("");
    info.name = textUnder(dictionary, "CFBundleName").value_or("");
    info.version = textUnder(dictionary, "CFBundleShortVersionString").value_or(info.version);
    info.executable = textUnder(dictionary, "CFBundleExecutable").value_or("");
    info.feedURL = textUnder(dictionary, "BrevinUpdateFeedURL");
    info.publicKey = textUnder(dictionary, "BrevinUpdatePublicKey");
    return info;
}

std::string BundleInfo::encode() const {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version").set_value("1.0");
    declaration.append_attribute("encoding").set_value("UTF-8");
    pugi::xml_node list = document.append_child("plist");
    list.append_attribute("version").set_value("1.0");
    const pugi::xml_node dictionary = list.append_child("dict");
    add(dictionary, "CFBundleIdentifier", identifier);
    add(dictionary, "CFBundleName", name);
    add(dictionary, "CFBundleShortVersionString", version);
    add(dictionary, "CFBundleExecutable", executable);
    if (feedURL) {
        add(dictionary, "BrevinUpdateFeedURL", *feedURL);
    }
    if (publicKey) {
        add(dictionary, "BrevinUpdatePublicKey", *publicKey);
    }
    std::ostringstream text;
    document.save(text, "    ");
    return std::move(text).str();
}

namespace Bundle {

fs::path infoFile(const fs::path& bundle) {
    return bundle / "Contents/Info.plist";
}

fs::path manifestFile(const fs::path& bundle) {
    return bundle / "Contents/_CodeSignature/Manifest";
}

fs::path signatureFile(const fs::path& bundle) {
    return bundle / "Contents/_CodeSignature/Signature";
}

std::optional<fs::path> around(const fs::path& program) {
    std::error_code error;
    for (fs::path folder = program.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (folder.extension() == ".app" && fs::is_regular_file(infoFile(folder), error)) {
            return folder;
        }
    }
    return std::nullopt;
}

} // namespace Bundle

} // namespace brevin
