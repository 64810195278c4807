#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Views/Ink/InkHistory.h"
#include "Varnic/Views/LiveView/LiveTranscript.h"

#include <QJSEngine>
#include <QObject>
#include <QQmlEngine>

namespace varnic {

/// One side of a running call, for the legend under its ink.
struct LiveSide {
    Q_GADGET
    QML_VALUE_TYPE(liveSide)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    /// What is recorded, or what is wrong where nothing is.
    Q_PROPERTY(QString detail MEMBER detail CONSTANT)
    Q_PROPERTY(bool isOn MEMBER isOn CONSTANT)

public:
    QString name;
    QString detail;
    bool isOn = true;

    bool operator==(const LiveSide&) const = default;
};

/// The running recording as views show it. Main thread.
class LiveCall : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// A recording runs, or is about to start or stop.
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY stateChanged)
    /// It can be stopped, discarded and paused.
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY stateChanged)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY stateChanged)
    /// What goes on, in a word.
    Q_PROPERTY(QString stateName READ stateName NOTIFY stateChanged)
    Q_PROPERTY(QString source READ source NOTIFY stateChanged)
    /// How long the recording is by now.
    Q_PROPERTY(QString stamp READ stamp NOTIFY stampChanged)
    Q_PROPERTY(varnic::InkHistory* ink READ ink CONSTANT)
    Q_PROPERTY(varnic::LiveTranscript* transcript READ transcript CONSTANT)
    Q_PROPERTY(varnic::LiveSide you READ you NOTIFY sidesChanged)
    Q_PROPERTY(varnic::LiveSide them READ them NOTIFY sidesChanged)
    /// What the user should know and no side's detail says; empty when all is well.
    Q_PROPERTY(QString warning READ warning NOTIFY sidesChanged)
    /// How loud each side is now, 0 to 1.
    Q_PROPERTY(double youLevel READ youLevel NOTIFY ticked)
    Q_PROPERTY(double themLevel READ themLevel NOTIFY ticked)
    /// How far the ring around the dot has spread, 0 to 1; 0 while nothing is recorded.
    Q_PROPERTY(double pulse READ pulse NOTIFY ticked)
    /// What stands in the place of a transcript without lines.
    Q_PROPERTY(QString placeholderTitle READ placeholderTitle NOTIFY sidesChanged)
    Q_PROPERTY(QString placeholder READ placeholder NOTIFY stateChanged)

public:
    explicit LiveCall(AppModel& model, QObject* parent = nullptr);

    static LiveCall* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] bool isRecording() const;
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] QString stateName() const;
    [[nodiscard]] QString source() const;

    [[nodiscard]] QString stamp() const { return stamp_; }

    [[nodiscard]] InkHistory* ink() { return &ink_; }

    [[nodiscard]] LiveTranscript* transcript() { return &transcript_; }

    [[nodiscard]] LiveSide you() const { return side(Speaker::you); }

    [[nodiscard]] LiveSide them() const { return side(Speaker::them); }

    [[nodiscard]] QString warning() const;

    [[nodiscard]] double youLevel() const { return ink_.latest().you; }

    [[nodiscard]] double themLevel() const { return ink_.latest().them; }

    [[nodiscard]] double pulse() const;
    [[nodiscard]] QString placeholderTitle() const;
    [[nodiscard]] QString placeholder() const;

    /// What a press of the record button means now.
    Q_INVOKABLE void toggle();
    /// Ends the recording and files the call.
    Q_INVOKABLE void stop();
    /// Ends the recording and throws it away; does nothing once it has ended.
    Q_INVOKABLE void discard();
    Q_INVOKABLE void pause();
    Q_INVOKABLE void resume();
    Q_INVOKABLE void copyHeadsUp();

Q_SIGNALS:
    void stateChanged();
    void stampChanged();
    void sidesChanged();
    void ticked();

private:
    void takeState();
    void takeTick();
    void takeTranscript();
    void setStamp();
    [[nodiscard]] bool records(Speaker speaker) const;
    [[nodiscard]] LiveSide side(Speaker speaker) const;

    AppModel& model_;
    RecordingController& recorder_;
    InkHistory ink_;
    LiveTranscript transcript_;
    QString stamp_;
    bool wasRecording_ = false;
    bool wasPaused_ = false;
};

} // namespace varnic
