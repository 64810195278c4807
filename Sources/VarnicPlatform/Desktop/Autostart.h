#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

/// Whether the desktop starts Varnic in the background when the user logs in: an autostart entry in the user's
/// configuration, which the desktop's own settings show too and may take away. Any thread.
namespace varnic::Autostart {

/// The entry could not be made or removed; `what()` is the user's sentence.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The entry's file, under XDG_CONFIG_HOME.
std::filesystem::path file();

/// Whether there is an entry that desktops follow.
bool isOn();

/// Makes or removes the entry. `program` is what is to be started, with "--background". Throws Error, and then it is as
/// it was.
void set(bool isOn, const std::string& program);

/// The running program as an autostart entry can name it: by its bare name where the shell finds it by that, else by
/// its path.
std::string runningProgram();

} // namespace varnic::Autostart
