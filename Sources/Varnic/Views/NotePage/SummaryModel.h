#pragma once

#include "Varnic/Views/Note/NoteModel.h"

#include <QPointer>

namespace varnic {

/// What stands between a call's timeline and its notes: how far it is transcribed, what went wrong, or who
/// summarises it. All texts are in this platform's words. Main thread.
class SummaryModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(varnic::NoteModel* note MEMBER note_ NOTIFY changed REQUIRED)
    /// What is being done with the call; empty when nothing is.
    Q_PROPERTY(QString stage READ stage NOTIFY changed)
    /// Why there is no whole transcript or recording; empty while the call is being transcribed.
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    /// The problem is one that the settings of speech recognition can mend.
    Q_PROPERTY(bool needsSettings READ needsSettings NOTIFY changed)
    /// What the call's summary lacks because of its language; empty for nothing.
    Q_PROPERTY(QString languageNote READ languageNote NOTIFY changed)
    /// The controls of AI summaries are shown.
    Q_PROPERTY(bool showsAI READ showsAI NOTIFY changed)
    /// Who made the AI digest that is shown; empty where none is.
    Q_PROPERTY(QString credit READ credit NOTIFY changed)
    /// "Asking …" while an AI is at work; else empty.
    Q_PROPERTY(QString asking READ asking NOTIFY changed)
    Q_PROPERTY(QString askTitle READ askTitle NOTIFY changed)
    Q_PROPERTY(QString askHelp READ askHelp NOTIFY changed)
    Q_PROPERTY(QString localHelp READ localHelp CONSTANT)
    /// Where the transcript goes.
    Q_PROPERTY(QString privacy READ privacy NOTIFY changed)
    Q_PROPERTY(bool staysHere READ staysHere NOTIFY changed)
    Q_PROPERTY(QString aiError READ aiError NOTIFY changed)

public:
    using QObject::QObject;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QString stage() const;
    [[nodiscard]] QString problem() const;
    [[nodiscard]] bool needsSettings() const;
    [[nodiscard]] QString languageNote() const;
    [[nodiscard]] bool showsAI() const;
    [[nodiscard]] QString credit() const;
    [[nodiscard]] QString asking() const;
    [[nodiscard]] QString askTitle() const;
    [[nodiscard]] QString askHelp() const;
    [[nodiscard]] static QString localHelp();
    [[nodiscard]] QString privacy() const;
    [[nodiscard]] bool staysHere() const;
    [[nodiscard]] QString aiError() const;

    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void summarise();
    Q_INVOKABLE void useLocalSummary();

Q_SIGNALS:
    void changed();

private:
    /// Null before the element is complete, and for a note that is no call.
    [[nodiscard]] const CallRecord* call() const;
    [[nodiscard]] AISettings settings() const;
    [[nodiscard]] bool hasAIDigest() const;

    QPointer<NoteModel> note_;
    AppModel* app_ = nullptr;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
