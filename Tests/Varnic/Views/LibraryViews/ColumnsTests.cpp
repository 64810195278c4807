#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/LibraryViews/Columns.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace varnic {
namespace {

struct Case {
    const char* name;
    qreal width;
    bool showsTranscript;
    bool isCall;
    bool showsSidebar;
};

class ColumnRule : public testing::TestWithParam<Case> {};

TEST_P(ColumnRule, sidebar_gives_way_to_a_transcript_only) {
    const Case& now = GetParam();
    ScratchModel model;
    Columns columns(*model);
    columns.setWindowWidth(now.width);
    const Uuid id = model->newNote("Plan");
    if (now.isCall) {
        model->update(id, false, [](Note& note) { note.call = CallRecord(); });
    }
    model->showTranscript = now.showsTranscript;
    EXPECT_EQ(columns.showsSidebar(), now.showsSidebar);
}

INSTANTIATE_TEST_SUITE_P(Widths, ColumnRule,
                         testing::Values(Case{"narrow_call_with_transcript", 1179, true, true, false},
                                         Case{"wide_call_with_transcript", 1180, true, true, true},
                                         Case{"narrow_call_alone", 1179, false, true, true},
                                         Case{"narrow_plain_note", 1179, true, false, true}),
                         [](const auto& one) { return one.param.name; });

TEST(Columns, sidebar_comes_back_with_the_width) {
    ScratchModel model;
    Columns columns(*model);
    const Uuid id = model->newNote("Call");
    model->update(id, false, [](Note& note) { note.call = CallRecord(); });
    model->showTranscript = true;
    columns.setWindowWidth(1179);
    const QSignalSpy changed(&columns, &Columns::showsSidebarChanged);
    columns.setWindowWidth(1180);
    EXPECT_TRUE(columns.showsSidebar());
    EXPECT_EQ(changed.count(), 1);
}

TEST(Columns, widths_keep_their_bounds_and_last) {
    ScratchModel model;
    {
        Columns columns(*model);
        EXPECT_EQ(columns.sidebarWidth(), 222);
        EXPECT_EQ(columns.listWidth(), 290);
        columns.setSidebarWidth(10);
        columns.setListWidth(1000);
        EXPECT_EQ(columns.sidebarWidth(), 190);
        EXPECT_EQ(columns.listWidth(), 380);
    }
    model.restart();
    const Columns again(*model);
    EXPECT_EQ(again.sidebarWidth(), 190);
    EXPECT_EQ(again.listWidth(), 380);
}

} // namespace
} // namespace varnic
