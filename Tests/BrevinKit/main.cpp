#include <QCoreApplication>
#include <gmock/gmock.h>

/// The updater needs an application.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
