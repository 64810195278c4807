#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/NotePage/CallPlayer.h"
#include "Varnic/Views/NotePage/NoteModel.h"
#include "Varnic/Views/NotePage/TranscriptModel.h"
#include "Varnic/Views/ViewModel.h"

#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QTextLayout>
#include <QQuickTextDocument>

#include <gmock/gmock.h>

namespace varnic {
namespace {

using testing::ElementsAre;

/// A page in a window, on a library of its own.
class NotePageTest : public testing::Test {
protected:
    /// Shows what the library has open.
    void open(Uuid id) {
        model_->selection = id;
        if (view_.source().isEmpty()) {
            view_.engine()->addImportPath("qrc:/qt/qml");
            setAppModel(*view_.engine(), *model_);
            view_.setResizeMode(QQuickView::SizeRootObjectToView);
            view_.resize(1000, 800);
            view_.setSource(QUrl("qrc:/qt/qml/Varnic/NotePage/Detail.qml"));
        }
        view_.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view_));
    }

    Uuid addNote(std::string title, std::vector<Block> blocks = {}) {
        return model_->newNote(std::move(title), std::move(blocks));
    }

    Uuid addCall(std::vector<Segment> segments) {
        const Uuid id = addNote("Call");
        model_->update(id, true, [&](Note& note) {
            note.call = CallRecord();
            note.call->startedAt = parseDate("2026-03-10T09:30:00Z");
            note.call->duration = 61;
            note.call->segments = std::move(segments);
        });
        return id;
    }

    template <typename Type = QObject>
    Type* find(const char* name) {
        return view_.rootObject() == nullptr ? nullptr : view_.rootObject()->findChild<Type*>(name);
    }

    template <typename Type>
    Type* only() {
        return view_.rootObject()->findChild<Type*>();
    }

    void type(const QString& text) {
        for (const QChar letter : text) {
            QTest::keyClick(&view_, letter.toLatin1());
        }
    }

    ScratchModel model_;
    QQuickView view_;
};

Segment line(Speaker who, double from, double to, const char* words) {
    return {who, from, to, words};
}

QStringList column(const QAbstractListModel& rows, int role) {
    QStringList values;
    for (int i = 0; i < rows.rowCount(); ++i) {
        values << rows.data(rows.index(i), role).toString();
    }
    return values;
}

TEST_F(NotePageTest, typing_in_the_title_saves_it) {
    const Uuid id = addNote("");
    open(id);
    auto* const title = find<QQuickItem>("title");
    ASSERT_NE(title, nullptr);
    title->forceActiveFocus();
    type("Plan");
    EXPECT_EQ(model_->note(id)->title, "Plan");
    ASSERT_EQ(model_.stored().size(), 1U);
    EXPECT_EQ(model_.stored().front().title, "Plan");
}

} // namespace
} // namespace varnic
