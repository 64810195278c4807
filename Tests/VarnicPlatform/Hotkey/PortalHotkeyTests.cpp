#include "VarnicPlatform/Desktop/BusService.h"
#include "VarnicPlatform/Desktop/DispatchUntil.h"
#include "VarnicPlatform/Desktop/MessageBus.h"
#include "VarnicPlatform/Hotkey/Hotkey.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace varnic {
namespace {

constexpr const char* interface = "org.freedesktop.portal.GlobalShortcuts";
constexpr KeyCombination ctrlAltSuper{.control = true, .alt = true, .super = true};

/// The desktop's portal, which needs a whole Wayland desktop in truth.
class Portal {
public:
    explicit Portal(DesktopEvents& events)
        : events_(events),
          service_(events, "org.freedesktop.portal.Desktop", [this](sd_bus_message* call) { return answer(call); }) {}

    /// Whether it has global shortcuts at all.
    bool knowsShortcuts = true;
    /// What the user answers to the dialog; 0 is yes.
    std::uint32_t answerToUser = 0;
    /// What was asked for.
    std::map<std::string, std::string> shortcut;
    std::string session;
    int sessions = 0;

    void activate(const char* token) {
        sd_bus_emit_signal(service_.bus(), "/org/freedesktop/portal/desktop", interface, "Activated", "osta{sv}",
                           session.c_str(), "toggle-recording", std::uint64_t{7}, 1, "activation_token", "s", token);
        events_.dispatch();
    }

    void closeSession() {
        sd_bus_emit_signal(service_.bus(), session.c_str(), "org.freedesktop.portal.Session", "Closed", "");
        events_.dispatch();
    }

private:
    bool answer(sd_bus_message* call) {
        const std::string member = sd_bus_message_get_member(call);
        if (!knowsShortcuts || sd_bus_message_is_method_call(call, interface, nullptr) <= 0) {
            return false;
        }
        if (member == "CreateSession") {
            createSession(call);
        } else if (member == "BindShortcuts") {
            bindShortcuts(call);
        }
        return true;
    }

    static std::map<std::string, std::string> readTexts(sd_bus_message* message) {
        std::map<std::string, std::string> texts;
        sd_bus_message_enter_container(message, 'a', "{sv}");
        const char* name = nullptr;
        const char* value = nullptr;
        while (sd_bus_message_read(message, "{sv}", &name, "s", &value) > 0) {
            texts[name] = value;
        }
        sd_bus_message_exit_container(message);
        return texts;
    }

    /// As the portal's documentation forms the paths: from the caller's name and its tokens.
    static std::string path(sd_bus_message* call, const char* kind, const std::string& token) {
        std::string sender = sd_bus_message_get_sender(call) + 1;
        for (char& character : sender) {
            character = character == '.' ? '_' : character;
        }
        return std::string("/org/freedesktop/portal/desktop/") + kind + "/" + sender + "/" + token;
    }

    void createSession(sd_bus_message* call) {
        const auto options = readTexts(call);
        session = path(call, "session", options.at("session_handle_token"));
        ++sessions;
        const std::string request = path(call, "request", options.at("handle_token"));
        sd_bus_reply_method_return(call, "o", request.c_str());
        sd_bus_emit_signal(service_.bus(), request.c_str(), "org.freedesktop.portal.Request", "Response", "ua{sv}", 0U,
                           1, "session_handle", "s", session.c_str());
    }

    void bindShortcuts(sd_bus_message* call) {
        const char* of = nullptr;
        sd_bus_message_read(call, "o", &of);
        ASSERT_EQ(of, session);
        sd_bus_message_enter_container(call, 'a', "(sa{sv})");
        sd_bus_message_enter_container(call, 'r', "sa{sv}");
        const char* id = nullptr;
        sd_bus_message_read(call, "s", &id);
        shortcut = readTexts(call);
        shortcut["id"] = id;
        sd_bus_message_exit_container(call);
        sd_bus_message_exit_container(call);
        const char* parent = nullptr;
        sd_bus_message_read(call, "s", &parent);
        const std::string request = path(call, "request", readTexts(call).at("handle_token"));
        sd_bus_reply_method_return(call, "o", request.c_str());
        sd_bus_emit_signal(service_.bus(), request.c_str(), "org.freedesktop.portal.Request", "Response", "ua{sv}",
                           answerToUser, 1, "shortcuts", "a(sa{sv})", 1, id, 2, "description", "s", "Record",
                           "trigger_description", "s", "Press Meta+F9");
    }

    DesktopEvents& events_;
    BusService service_;
};

class PortalHotkeyTest : public testing::Test {
protected:
    MessageBus bus;
    DesktopEvents events;
    std::optional<Portal> portal{std::in_place, events};
    Hotkey hotkey{events, Hotkey::System::portal};
    std::vector<std::string> tokens;

    void take() {
        hotkey.registerCombination(ctrlAltSuper, [this](const std::string& token) { tokens.push_back(token); });
    }

    bool comesTo(Hotkey::State state) {
        return dispatchUntil(events, [this, state] { return hotkey.status().state == state; });
    }
};

TEST_F(PortalHotkeyTest, grantedShortcut_actsWithTheTokenToComeToTheFront) {
    std::vector<Hotkey::State> states;
    hotkey.statusChanged = [&states](const Hotkey::Status& status) { states.push_back(status.state); };
    take(); // the desktop may have answered when it returns
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    EXPECT_EQ(states, (std::vector{Hotkey::State::waiting, Hotkey::State::registered}));
    EXPECT_EQ(hotkey.status().message, "The desktop has “Press Meta+F9” for it.");
    const std::map<std::string, std::string> asked{{"id", "toggle-recording"},
                                                   {"description", "Start or stop recording a call"},
                                                   {"preferred_trigger", "CTRL+ALT+LOGO+r"}};
    EXPECT_EQ(portal->shortcut, asked);
    portal->activate("token-1");
    ASSERT_TRUE(dispatchUntil(events, [this] { return tokens.size() == 1; }));
    EXPECT_EQ(tokens.front(), "token-1");
}

TEST_F(PortalHotkeyTest, shortcutOfAnOldSession_doesNothing) {
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    const std::string old = portal->session;
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    const std::string now = std::exchange(portal->session, old);
    portal->activate("old");
    portal->session = now;
    portal->activate("new");
    ASSERT_TRUE(dispatchUntil(events, [this] { return !tokens.empty(); }));
    EXPECT_EQ(tokens, std::vector<std::string>{"new"});
}

TEST_F(PortalHotkeyTest, userSaysNo_isUnavailable) {
    portal->answerToUser = 1;
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::unavailable));
    EXPECT_EQ(hotkey.status().message, "The desktop hasn’t granted the hotkey; its keyboard settings may.");
}

TEST_F(PortalHotkeyTest, portalWithoutShortcuts_namesTheCommand) {
    portal->knowsShortcuts = false;
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::unavailable));
    EXPECT_NE(hotkey.status().message.find("varnic --toggle-recording"), std::string::npos);
}

TEST_F(PortalHotkeyTest, noPortal_namesTheCommandUntilOneComes) {
    portal.reset();
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::unavailable));
    EXPECT_NE(hotkey.status().message.find("varnic --toggle-recording"), std::string::npos);
    portal.emplace(events);
    EXPECT_TRUE(comesTo(Hotkey::State::registered));
}

TEST_F(PortalHotkeyTest, portalThatEnds_isAskedAnew) {
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    portal.reset();
    ASSERT_TRUE(comesTo(Hotkey::State::unavailable));
    portal.emplace(events);
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    portal->activate("");
    EXPECT_TRUE(dispatchUntil(events, [this] { return tokens.size() == 1; }));
}

TEST_F(PortalHotkeyTest, closedSession_isTold) {
    take();
    ASSERT_TRUE(comesTo(Hotkey::State::registered));
    portal->closeSession();
    EXPECT_TRUE(comesTo(Hotkey::State::unavailable));
}

TEST(PortalHotkeyAlone, noBus_namesTheCommand) {
    const EnvironmentVariable none("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    DesktopEvents events;
    Hotkey hotkey(events, Hotkey::System::portal);
    hotkey.registerCombination(ctrlAltSuper, [](const std::string&) {});
    EXPECT_EQ(hotkey.status().state, Hotkey::State::unavailable);
    EXPECT_NE(hotkey.status().message.find("varnic --toggle-recording"), std::string::npos);
}

} // namespace
} // namespace varnic
