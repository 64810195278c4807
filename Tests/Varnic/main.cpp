#include <QCoreApplication>
#include <gmock/gmock.h>

/// Flows need an application's event loop.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
