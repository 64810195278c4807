#include "VarnicPlatform/Desktop/MessageBus.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

/// Flows need an application's event loop, and the shell a bus. Nothing of the machine's own desktop is touched.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const varnic::EnvironmentVariable display("DISPLAY", nullptr);
    const varnic::EnvironmentVariable wayland("WAYLAND_DISPLAY", nullptr);
    const varnic::MessageBus bus;
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
