#include "VarnicPlatform/Desktop/Autostart.h"

#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Files/LibraryError.h"

#include <fmt/format.h>
#include <glib.h>

#include <cstdlib>
#include <memory>
#include <system_error>

namespace varnic {

namespace {

namespace fs = std::filesystem;

constexpr const char* group = G_KEY_FILE_DESKTOP_GROUP;

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;

/// The path as a desktop file's Exec takes it: in quotes, with its own escapes.
std::string quoted(const std::string& program) {
    std::string text = "\"";
    for (const char c : program) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') {
            text += '\\';
        }
        text += c;
        if (c == '%') {
            text += '%';
        }
    }
    return text + '"';
}

} // namespace

fs::path Autostart::file() {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    const fs::path folder =
        configured != nullptr && *configured == '/' ? fs::path(configured) : fs::path(g_get_home_dir()) / ".config";
    return folder / "autostart" / "app.brevin.Varnic.desktop";
}

bool Autostart::isOn() {
    const KeyFile entry(g_key_file_new(), g_key_file_unref);
    if (g_key_file_load_from_file(entry.get(), file().c_str(), G_KEY_FILE_NONE, nullptr) == FALSE) {
        return false;
    }
    const auto says = [&entry](const char* key, bool otherwise) {
        return g_key_file_has_key(entry.get(), group, key, nullptr) == FALSE
                   ? otherwise
                   : g_key_file_get_boolean(entry.get(), group, key, nullptr) == TRUE;
    };
    return !says("Hidden", false) && says("X-GNOME-Autostart-enabled", true);
}

void Autostart::set(bool isOn, const std::string& program) {
    try {
        if (!isOn) {
            std::error_code failure;
            fs::remove(file(), failure);
            if (failure) {
                throw LibraryError("removed", file(), failure);
            }
            return;
        }
        const KeyFile entry(g_key_file_new(), g_key_file_unref);
        const auto say = [&entry](const char* key, const std::string& value) {
            g_key_file_set_string(entry.get(), group, key, value.c_str());
        };
        say("Type", "Application");
        say("Name", "Varnic");
        say("Comment", "Wait in the background for a call to record");
        say("Exec", quoted(program) + " --background");
        say("Icon", "app.brevin.Varnic");
        say("X-GNOME-Autostart-enabled", "true");
        gsize length = 0;
        const std::unique_ptr<char, decltype(&g_free)> text(g_key_file_to_data(entry.get(), &length, nullptr), g_free);
        Folders::make(file().parent_path());
        AtomicWrite::replace(file(), {text.get(), length}, AtomicWrite::Readers::asUsual);
    } catch (const LibraryError& error) {
        throw Error(fmt::format("The start at login can’t be changed. {}", error.what()));
    }
}

std::string Autostart::runningProgram() {
    std::error_code failure;
    const fs::path running = fs::read_symlink("/proc/self/exe", failure);
    if (failure) {
        return "varnic";
    }
    const std::string name = running.filename().string();
    const std::unique_ptr<char, decltype(&g_free)> found(g_find_program_in_path(name.c_str()), g_free);
    const bool isFound = found && fs::equivalent(found.get(), running, failure) && !failure;
    return isFound ? name : running.string();
}

} // namespace varnic
