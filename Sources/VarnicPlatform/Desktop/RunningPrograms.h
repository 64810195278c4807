#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Which programs run on this machine. Any thread.
namespace varnic::RunningPrograms {

/// The bundle identifiers of the calling applications and browsers that run for this user, each once, in no order.
/// `proc` is where the kernel tells of processes (proc(5)); what cannot be read there is passed over.
std::vector<std::string> identifiers(const std::filesystem::path& proc = "/proc");

/// The bundle identifier of one process, if it is a calling application or browser.
std::optional<std::string> identifier(pid_t process, const std::filesystem::path& proc = "/proc");

} // namespace varnic::RunningPrograms
