#pragma once

#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <string>

namespace varnic {

/// An X server without a screen, the one of DISPLAY as long as it lives.
class XServer {
public:
    XServer() : display_("DISPLAY", (":" + server_.readLine()).c_str()) {}

    /// Lets it end at once, as a crash does.
    void kill() {
        server_.signal(9);
        server_.wait();
    }

private:
    ChildProgram server_{{"Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24", "-nolisten", "tcp", "-noreset"}};
    EnvironmentVariable display_;
};

} // namespace varnic
