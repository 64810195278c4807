#include "VarnicPlatform/Desktop/FileManager.h"

#include "VarnicCore/TemporaryFolder.h"
#include "VarnicPlatform/Desktop/BusService.h"
#include "VarnicPlatform/Desktop/DispatchUntil.h"
#include "VarnicPlatform/Desktop/MessageBus.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <string>

namespace varnic {
namespace {

/// A file manager, played by the test, since the real ones need a desktop.
class FakeFileManager {
public:
    explicit FakeFileManager(DesktopEvents& events)
        : service_(events, "org.freedesktop.FileManager1", [this](sd_bus_message* call) {
              const char* method = sd_bus_message_get_member(call);
              const char* entry = nullptr;
              sd_bus_message_enter_container(call, SD_BUS_TYPE_ARRAY, "s");
              sd_bus_message_read(call, "s", &entry);
              shown += std::string(method) + " " + entry + "\n";
              return sd_bus_reply_method_return(call, "") >= 0;
          }) {}

    std::string shown;

private:
    BusService service_;
};

TEST(FileManager, show_asksTheDesktopsOwn) {
    const MessageBus bus;
    DesktopEvents events;
    const FakeFileManager manager(events);
    auto asked = std::async(std::launch::async, [] {
        return FileManager::showFolder("/home/sam/My notes") && FileManager::showFile("/home/sam/a.m4a");
    });
    ASSERT_TRUE(dispatchUntil(events, [&] { return manager.shown.find("a.m4a") != std::string::npos; }));
    EXPECT_EQ(manager.shown, "ShowFolders file:///home/sam/My%20notes\nShowItems file:///home/sam/a.m4a\n");
    EXPECT_TRUE(asked.get());
}

TEST(FileManager, show_noneThere_opensTheFolder) {
    const MessageBus bus;
    const TemporaryFolder folder;
    const std::string said = folder.path() / "said";
    std::ofstream(folder.path() / "xdg-open")
        << "#!/bin/sh\necho \"$1\" >'" << said << ".new'\nmv '" << said << ".new' '" << said << "'\n";
    std::filesystem::permissions(folder.path() / "xdg-open", std::filesystem::perms::owner_all);
    const EnvironmentVariable path("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str());
    EXPECT_TRUE(FileManager::showFolder("/home/sam"));
    while (!std::filesystem::exists(said)) {
        std::this_thread::yield();
    }
    std::string shown;
    std::getline(std::ifstream(said), shown);
    EXPECT_EQ(shown, "/home/sam");
}

TEST(FileManager, show_nothingThere_saysSo) {
    const MessageBus bus;
    const EnvironmentVariable path("PATH", "/nonexistent");
    EXPECT_FALSE(FileManager::showFolder("/home/sam"));
}

} // namespace
} // namespace varnic
