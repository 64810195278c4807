#include "Varnic/Shell/LoginStart.h"

#include "Varnic/AppModel/ScratchModel.h"
#include "VarnicPlatform/Desktop/Autostart.h"
#include "VarnicPlatform/Desktop/BusService.h"
#include "VarnicPlatform/Desktop/ChildProgram.h"
#include "VarnicPlatform/Desktop/DispatchUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace varnic {
namespace {

/// The desktop's portal for programs in a sandbox, which needs a whole desktop in truth.
class Portal {
public:
    explicit Portal(DesktopEvents& events)
        : service_(events, "org.freedesktop.portal.Desktop", [this](sd_bus_message* call) { return answer(call); }) {}

    /// What the user answers to the dialog; 0 is yes.
    std::uint32_t answerToUser = 0;
    std::string command;

private:
    bool answer(sd_bus_message* call) {
        if (sd_bus_message_is_method_call(call, "org.freedesktop.portal.Background", "RequestBackground") <= 0) {
            return false;
        }
        std::string token;
        int isWanted = 0;
        const char* name = nullptr;
        const char* text = nullptr;
        sd_bus_message_read(call, "s", &text);
        sd_bus_message_enter_container(call, 'a', "{sv}");
        while (sd_bus_message_enter_container(call, 'e', "sv") > 0) {
            sd_bus_message_read(call, "s", &name);
            if (std::string(name) == "handle_token") {
                sd_bus_message_read(call, "v", "s", &text);
                token = text;
            } else if (std::string(name) == "autostart") {
                sd_bus_message_read(call, "v", "b", &isWanted);
            } else if (std::string(name) == "commandline") {
                const char* option = nullptr;
                sd_bus_message_read(call, "v", "as", 2, &text, &option);
                command = std::string(text) + " " + option;
            } else {
                sd_bus_message_skip(call, "v");
            }
            sd_bus_message_exit_container(call);
        }
        std::string sender = sd_bus_message_get_sender(call) + 1;
        std::ranges::replace(sender, '.', '_');
        const std::string path = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
        sd_bus_reply_method_return(call, "o", path.c_str());
        sd_bus_emit_signal(service_.bus(), path.c_str(), "org.freedesktop.portal.Request", "Response", "ua{sv}",
                           answerToUser, 2, "background", "b", 1, "autostart", "b", isWanted);
        return true;
    }

    BusService service_;
};

class LoginStartTest : public testing::Test {
protected:
    /// Asks, and waits for what comes of it.
    bool ask(LoginStart& start, bool shallStart) {
        const std::string before = start.problem.value();
        start.set(shallStart);
        const bool came =
            dispatchUntil(events, [&] { return start.isOn.value() == shallStart || start.problem.value() != before; });
        return came && start.isOn.value();
    }

    ScratchModel model;
    EnvironmentVariable configHome{"XDG_CONFIG_HOME", model.folder().c_str()};
    DesktopEvents events;
};

TEST_F(LoginStartTest, set_entry_isSeenByOthersAndByTheirs) {
    LoginStart start(events, model->settings, false);
    EXPECT_FALSE(start.isOn.value());
    EXPECT_TRUE(ask(start, true));
    EXPECT_EQ(start.problem.value(), "");
    std::filesystem::remove(Autostart::file()); // as the desktop's own settings do
    start.look();
    EXPECT_FALSE(start.isOn.value());
    std::filesystem::remove_all(Autostart::file().parent_path());
    std::ofstream(Autostart::file().parent_path()) << "in the way";
    EXPECT_FALSE(ask(start, true));
    EXPECT_NE(start.problem.value(), "");
}

TEST_F(LoginStartTest, set_inASandbox_isAskedOfTheDesktop) {
    Portal portal(events);
    {
        LoginStart start(events, model->settings, true);
        EXPECT_TRUE(ask(start, true));
        EXPECT_EQ(portal.command, "varnic --background");
        EXPECT_FALSE(Autostart::isOn());
    }
    LoginStart start(events, model->settings, true);
    EXPECT_TRUE(start.isOn.value()) << "as the desktop said last";
    portal.answerToUser = 1;
    EXPECT_TRUE(ask(start, false));
    EXPECT_NE(start.problem.value(), "");
    portal.answerToUser = 0;
    EXPECT_FALSE(ask(start, false));
    EXPECT_EQ(start.problem.value(), "");
}

TEST_F(LoginStartTest, set_noPortal_saysSo) {
    LoginStart start(events, model->settings, true);
    EXPECT_FALSE(ask(start, true));
    EXPECT_NE(start.problem.value(), "");
}

} // namespace
} // namespace varnic
