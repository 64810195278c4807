#include "Varnic/Views/Theme/Native/Symbol.h"
#include "Varnic/Views/Theme/Native/SymbolTable.h"
#include "VarnicCore/Models/Block.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

namespace varnic {
namespace {

constexpr int side = 48;

QImage painted(const QString& name, const QColor& color) {
    Symbol symbol;
    symbol.setProperty("name", name);
    symbol.setProperty("color", color);
    symbol.setSize({side, side});
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    symbol.paint(&painter);
    return image;
}

/// The pixels that are wholly of that colour.
int pixels(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            count += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return count;
}

QString text(std::string_view name) {
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

TEST(Symbols, AreSortedAndFound) {
    EXPECT_TRUE(std::ranges::is_sorted(allSymbols(), {}, &SymbolDrawing::name));
    EXPECT_EQ(findSymbol("trash")->file, "trash-2");
    EXPECT_EQ(findSymbol("no.such.thing"), nullptr);
}

TEST(Symbols, AllAreDrawnInTheirColour) {
    for (const SymbolDrawing& symbol : allSymbols()) {
        EXPECT_GT(pixels(painted(text(symbol.name), Qt::red), Qt::red), 30) << symbol.name;
    }
}

/// A notice whose symbol is missing shows an empty place, which nothing tells.
TEST(Symbols, EachOneThatTheSourcesNameExists) {
    const std::regex naming(R"~((?:symbol(?: =|:) |undoable\([^;]*, )"([a-z0-9.]+)")~");
    int found = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(VARNIC_APPLICATION_SOURCES)) {
        if (file.path().extension() != ".cpp" && file.path().extension() != ".qml") {
            continue;
        }
        std::ifstream stream(file.path());
        const std::string source{std::istreambuf_iterator<char>(stream), {}};
        for (std::sregex_iterator match(source.begin(), source.end(), naming), end; match != end; ++match) {
            EXPECT_NE(findSymbol((*match)[1].str()), nullptr) << (*match)[1] << " in " << file.path();
            ++found;
        }
    }
    EXPECT_GT(found, 20);
}

TEST(Symbols, EachKindOfBlockHasOne) {
    for (const BlockKind kind : allBlockKinds) {
        EXPECT_NE(findSymbol(symbol(kind)), nullptr) << symbol(kind);
    }
}

TEST(Symbols, FilledOnesCoverMoreThanOutlines) {
    EXPECT_GT(pixels(painted("checkmark.square.fill", Qt::red), Qt::red),
              2 * pixels(painted("checkmark.square", Qt::red), Qt::red));
    EXPECT_GT(pixels(painted("play.fill", Qt::red), Qt::red), 200);
}

} // namespace
} // namespace varnic
