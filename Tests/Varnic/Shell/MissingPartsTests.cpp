#include "Varnic/Shell/MissingParts.h"

#include <gmock/gmock.h>

namespace varnic {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(MissingParts, of_namesEachPartAndWhatToInstall) {
    EXPECT_THAT(MissingParts::of({}), IsEmpty());

    struct Case {
        DesktopParts parts;
        std::string name;
        std::string install;
    };

    for (const auto& [parts, name, install] :
         {Case{{.hasBus = false, .hasPortal = false, .fontPackages = {}}, "a D-Bus session", "dbus-user-session"},
          Case{{.hasTray = false, .fontPackages = {}}, "a tray", "gnome-shell-extension-appindicator"},
          Case{{.fontPackages = {"a", "b", "c"}}, "some of its fonts", "install a, b and c."},
          Case{{.hasPortal = false, .fontPackages = {}}, "", "xdg-desktop-portal"}}) {
        const auto missing = MissingParts::of(parts);
        ASSERT_EQ(missing.size(), 1U) << install;
        EXPECT_EQ(missing[0].name, name);
        EXPECT_THAT(missing[0].sentence, HasSubstr(install));
    }
}

TEST(MissingParts, pillNote_isOfWaylandAlone) {
    EXPECT_THAT(MissingParts::pillNote({.fontPackages = {}, .hasNotifications = false}), IsEmpty());
    const DesktopParts wayland{.fontPackages = {}, .isWayland = true};
    EXPECT_THAT(MissingParts::pillNote(wayland), AllOf(HasSubstr("“Stop & Save”"), Not(HasSubstr("nstall"))));
    DesktopParts bare = wayland;
    bare.hasNotifications = false;
    EXPECT_THAT(MissingParts::pillNote(bare), HasSubstr("install mako-notifier or dunst"));
}

TEST(MissingParts, notice_listsWhatHasAName) {
    EXPECT_THAT(MissingParts::notice({}), IsEmpty());
    EXPECT_THAT(MissingParts::notice({"", ""}), IsEmpty());
    EXPECT_EQ(MissingParts::notice({"PipeWire", "", "a tray"}),
              "Varnic doesn’t find PipeWire and a tray — see Settings for what to install.");
}

} // namespace
} // namespace varnic
