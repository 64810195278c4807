#pragma once

#include "Varnic/AppModel/ScratchModel.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/ItemTree.h"
#include "Varnic/Views/NotePage/CallPlayer.h"
#include "VarnicCore/Audio/AudioMix.h"

#include <QAbstractListModel>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QStringList>
#include <QTest>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace varnic {

/// A page in a window, on a library of its own.
class NotePageTest : public testing::Test {
protected:
    /// A page that has been left is deleted while there is an application.
    void TearDown() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    static Segment line(Speaker who, double from, double to, const char* words) { return {who, from, to, words}; }

    /// What all rows show in a role.
    static QStringList column(const QAbstractListModel& rows, int role) {
        QStringList values;
        for (int i = 0; i < rows.rowCount(); ++i) {
            values << rows.data(rows.index(i), role).toString();
        }
        return values;
    }

    /// Shows what the library has open.
    void open(Uuid id) {
        model->selection = id;
        if (view.source().isEmpty()) {
            view.engine()->addImportPath("qrc:/qt/qml");
            ViewContext{.model = *model}.giveTo(*view.engine());
            view.setResizeMode(QQuickView::SizeRootObjectToView);
            view.resize(1000, 800);
            view.setSource(QUrl("qrc:/qt/qml/Varnic/NotePage/Detail.qml"));
        }
        view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    Uuid addNote(std::string title, std::vector<Block> blocks = {}) {
        return model->newNote(std::move(title), std::move(blocks));
    }

    Uuid addCall(std::vector<Segment> segments) {
        const Uuid id = addNote("Call");
        model->update(id, true, [&](Note& note) {
            note.call = CallRecord();
            note.call->startedAt = parseDate("2026-03-10T09:30:00Z");
            note.call->duration = 61;
            note.call->segments = std::move(segments);
        });
        return id;
    }

    /// Opens a call with a silent recording that can be played.
    void openCallWithAudio(std::vector<Segment> segments) {
        const Uuid id = addCall(std::move(segments));
        std::filesystem::create_directories(model->audioFolder(id));
        AudioMix::write(std::vector<float>(std::size_t{61} * 48'000), model->audioFolder(id) / "them.m4a", true);
        model->update(id, true, [](Note& note) { note.call->tracks = {Speaker::them}; });
        open(id);
        ASSERT_TRUE(QTest::qWaitFor([this] { return only<CallPlayer>()->available(); }));
    }

    template <typename Type = QObject>
    Type* find(const char* name) {
        return within<Type>(view.rootObject(), name);
    }

    /// Whether a place in a turn of the transcript, from 0 at its top to 1, is in sight.
    bool isTurnSeen(int row, double part = 0) {
        auto* const turns = find<QQuickItem>("turns");
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(turns, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row));
        const qreal y = item == nullptr ? -1 : item->mapToItem(turns, QPointF(0, item->height() * part)).y();
        return y >= 0 && y < turns->height();
    }

    template <typename Type>
    Type* only() {
        return find<Type>("");
    }

    void type(const QString& text) {
        for (const QChar letter : text) {
            QTest::keyClick(&view, letter.toLatin1());
        }
    }

    ScratchModel model;
    QQuickView view;
};

} // namespace varnic
