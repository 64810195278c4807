#pragma once

#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <list>
#include <string>
#include <vector>

namespace varnic {

/// A private sound system as long as it lives, in the environment of this process; see Tests/fixtures/sound_system.py
/// for the options and the commands.
class SoundSystem {
public:
    explicit SoundSystem(const std::vector<std::string>& options = {});
    SoundSystem(const SoundSystem&) = delete;
    SoundSystem& operator=(const SoundSystem&) = delete;
    ~SoundSystem();

    /// Gives the command and what it answered. Throws std::runtime_error if that was an error.
    std::string operator()(const std::string& command);

private:
    ChildProgram program_;
    std::list<EnvironmentVariable> environment_;
};

} // namespace varnic
