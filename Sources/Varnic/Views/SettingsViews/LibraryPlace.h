#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

namespace varnic {

/// Where the library lies, and how it comes to lie in another folder. Main thread.
class LibraryPlace : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString folder READ folder NOTIFY changed)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY changed)
    /// The part of the move that is done, 0 to 1.
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    /// What came of the last move; empty before.
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)
    /// It went well.
    Q_PROPERTY(bool isMoved READ isMoved NOTIFY changed)
    /// The chosen folder holds another library, which can be used in place of this one.
    Q_PROPERTY(bool offersOther READ offersOther NOTIFY changed)

public:
    static LibraryPlace* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit LibraryPlace(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString folder() const { return QString::fromStdString(model_.dataDirectory().string()); }

    [[nodiscard]] bool isMoving() const { return model_.libraryMove.value().has_value(); }

    [[nodiscard]] double progress() const { return model_.libraryMove.value().value_or(0); }

    [[nodiscard]] QString sentence() const { return QString::fromStdString(sentence_); }

    [[nodiscard]] bool isMoved() const { return isMoved_; }

    [[nodiscard]] bool offersOther() const { return !other_.empty(); }

    /// Shows it in the desktop's file manager.
    Q_INVOKABLE void show();

    /// Has the user pick a folder and moves the library there, unless it holds another one.
    Q_INVOKABLE void change() { chooseAndMove(); }

    /// Uses the other library.
    Q_INVOKABLE void useOther() { goToOther(); }

    Q_INVOKABLE void keepThis();

    Q_INVOKABLE void cancel() { model_.cancelLibraryMove(); }

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> chooseAndMove();
    QCoro::Task<> goToOther();
    void say(std::string sentence, bool isMoved);

    AppModel& model_;
    std::string sentence_;
    bool isMoved_ = false;
    /// Where the library is that is offered.
    std::filesystem::path other_;
    QPropertyNotifier watcher_;
};

} // namespace varnic
