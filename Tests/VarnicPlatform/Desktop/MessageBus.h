#pragma once

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Desktop/ChildProgram.h"

#include <fstream>
#include <string>

namespace varnic {

/// A D-Bus on which nothing starts by itself: both the session's and the system's as long as it lives.
class MessageBus {
public:
    MessageBus() : bus_({"dbus-daemon", "--nofork", "--print-address=1", "--config-file=" + writeConfiguration()}) {}

private:
    std::string writeConfiguration() {
        const std::string file = folder_.path() / "bus.conf";
        std::ofstream(file) << "<busconfig><type>session</type><listen>unix:dir=" << folder_.path().string()
                            << "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                               "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                               "<allow own=\"*\"/></policy></busconfig>";
        return file;
    }

    TemporaryFolder folder_;
    ChildProgram bus_;
    std::string address_ = bus_.readLine();
    EnvironmentVariable session_{"DBUS_SESSION_BUS_ADDRESS", address_.c_str()};
    EnvironmentVariable system_{"DBUS_SYSTEM_BUS_ADDRESS", address_.c_str()};
};

} // namespace varnic
