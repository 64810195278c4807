#include "VarnicPlatform/Desktop/FrontProgram.h"

#include "VarnicPlatform/Desktop/XConnection.h"
#include "VarnicPlatform/Desktop/XServer.h"

#include <gtest/gtest.h>

#include <poll.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace varnic {
namespace {

/// A window of some program.
class Window {
public:
    explicit Window(std::string_view windowClass) {
        xcb_create_window(x(), XCB_COPY_FROM_PARENT, id_, root(), 0, 0, 100, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_change_property(x(), XCB_PROP_MODE_REPLACE, id_, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(windowClass.size()), windowClass.data());
        const std::uint32_t changes = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x(), root(), XCB_CW_EVENT_MASK, &changes);
        xcb_map_window(x(), id_);
        xcb_flush(x());
    }

    /// Waits until the window manager has changed something of the root, which tells what is in front; false where it
    /// doesn't within half a minute.
    bool waitForChange() {
        pollfd readable{.fd = xcb_get_file_descriptor(x()), .events = POLLIN, .revents = 0};
        xcb_generic_event_t* event = xcb_poll_for_event(x());
        while (event == nullptr && ::poll(&readable, 1, 30'000) > 0) {
            event = xcb_poll_for_event(x());
        }
        std::free(event);
        return event != nullptr;
    }

private:
    [[nodiscard]] xcb_connection_t* x() const { return connection_.get(); }

    [[nodiscard]] xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(x())).data->root; }

    XConnection connection_;
    xcb_window_t id_ = xcb_generate_id(connection_.get());
};

TEST(FrontProgram, identifier_isThatOfTheFocusedWindow) {
    using namespace std::string_view_literals;
    const XServer server;
    EXPECT_EQ(FrontProgram::identifier(), std::nullopt);
    ChildProgram manager({"openbox", "--startup", "echo ready"});
    for (std::string line = manager.readLine(); line != "ready"; line = manager.readLine()) {
        ASSERT_FALSE(line.empty());
    }

    struct Case {
        std::string_view windowClass;
        std::optional<std::string> identifier;
    };

    for (const auto& [windowClass, identifier] :
         {Case{"zoom\0zoom\0"sv, "us.zoom.xos"}, Case{"Navigator\0firefox\0"sv, "org.mozilla.firefox"},
          Case{"slack\0Slack\0"sv, "com.tinyspeck.slackmacgap"}}) {
        Window window(windowClass);
        while (FrontProgram::identifier() != identifier) {
            ASSERT_TRUE(window.waitForChange()) << identifier.value();
        }
    }
}

TEST(FrontProgram, identifier_isNothingWithoutServer) {
    const EnvironmentVariable none("DISPLAY", nullptr);
    EXPECT_EQ(FrontProgram::identifier(), std::nullopt);
}

} // namespace
} // namespace varnic
