// What a note of 2,000 blocks costs the main thread in its page, drawn into memory, beside one of 20 blocks: opening it
// until it is drawn, and a letter or a Return typed in its middle, with the saves and the pictures that follow from it:
// bench-note-page

#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/Theme/Native/Fonts.h"
#include "bench/Measure.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QtQml/QQmlExtensionPlugin>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(Varnic_ThemePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_Theme_NativePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_InkPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_LiveViewPlugin)
Q_IMPORT_QML_PLUGIN(Varnic_NotePlugin)
Q_IMPORT_QML_PLUGIN(Varnic_NotePagePlugin)

namespace {

using namespace varnic;
using bench::Cost;
using bench::costOf;

constexpr int rounds = 30;

std::vector<Block> blocksOf(std::size_t count) {
    constexpr auto kinds = std::to_array({BlockKind::paragraph, BlockKind::todo, BlockKind::bullet});
    std::vector<Block> blocks(count);
    for (std::size_t i = 0; i < count; ++i) {
        blocks[i].kind = kinds.at(i % kinds.size());
        blocks[i].text =
            fmt::format("The {}th line of a note says what was agreed, and who does what before the next call.", i);
    }
    return blocks;
}

class Page {
public:
    Page() {
        view.engine()->addImportPath("qrc:/qt/qml");
        ViewContext{.model = *model}.giveTo(*view.engine());
        view.setResizeMode(QQuickView::SizeRootObjectToView);
        view.resize(1000, 800);
        view.setSource(QUrl("qrc:/qt/qml/Varnic/NotePage/Detail.qml"));
        view.show();
        static_cast<void>(QTest::qWaitForWindowExposed(&view));
    }

    void open(const Uuid& id) {
        model->selection = id;
        QCoreApplication::sendPostedEvents();
        view.grabWindow();
    }

    ScratchModel model;
    QQuickView view;
};

void print(const char* what, std::size_t blocks, std::vector<Cost> costs) {
    std::ranges::sort(costs, {}, &Cost::elapsed);
    fmt::print("  {:<8} {:>5} blocks: {:7.2f} ms; {:.2f} ms at most\n", what, blocks,
               bench::median(costs, &Cost::elapsed) * 1e3, costs.back().elapsed * 1e3);
}

void measure(Page& page, std::size_t blocks) {
    const Uuid other = page.model->newNote("Other", blocksOf(1));
    const Uuid id = page.model->newNote("Long", blocksOf(blocks));
    std::vector<Cost> opened;
    for (int round = 0; round < rounds; ++round) {
        page.open(other);
        opened.push_back(costOf([&] { page.open(id); }));
    }
    print("open", blocks, opened);

    page.model->focusBlock = page.model->note(id)->blocks[blocks / 2].id;
    page.open(id);
    for (const auto& [name, key] : {std::pair("letter", Qt::Key_A), std::pair("Return", Qt::Key_Return)}) {
        std::vector<Cost> keys;
        for (int round = 0; round < rounds; ++round) {
            keys.push_back(costOf([&] {
                QTest::keyClick(&page.view, key);
                QCoreApplication::sendPostedEvents();
                page.view.grabWindow();
            }));
        }
        print(name, blocks, keys);
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    prepareFonts();
    Page page;
    fmt::print("a note in its page; to reach with 2,000 blocks: 100 ms to open it, 8 ms a key\n");
    for (const std::size_t blocks : {20U, 2'000U}) {
        measure(page, blocks);
    }
}
