#include <QFontDatabase>
#include <QStringList>
#include <gtest/gtest.h>

namespace varnic {
namespace {

TEST(Fonts, families_areInstalled) {
    const QStringList installed = QFontDatabase::families();
    for (const char* family : {"Vollkorn", "Inter", "JetBrains Mono", "Noto Color Emoji"}) {
        EXPECT_TRUE(installed.contains(QLatin1String(family))) << family;
    }
}

} // namespace
} // namespace varnic
