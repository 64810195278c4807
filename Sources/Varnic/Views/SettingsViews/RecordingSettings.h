#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "VarnicPlatform/Capture/Permissions.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <filesystem>
#include <vector>

namespace varnic {

/// The transcript's language and what is kept of a call. Main thread.
class RecordingSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// The languages that can be recognised here, by their names; first "Automatic", where they can be told apart.
    Q_PROPERTY(QList<QString> languages READ languages NOTIFY changed)
    /// Which of them holds, or -1.
    Q_PROPERTY(int language READ language WRITE setLanguage NOTIFY changed)
    /// The language that holds, where it is none of them.
    Q_PROPERTY(QString otherLanguage READ otherLanguage NOTIFY changed)
    /// What else is to be known of the one that holds; empty for nothing.
    Q_PROPERTY(QString languageDetail READ languageDetail NOTIFY changed)
    /// Whether several speech models know the language.
    Q_PROPERTY(bool hasSeveralModels READ hasSeveralModels NOTIFY changed)
    /// Which of them writes finished calls down: 0 for the one with the best words, 1 for the fastest.
    Q_PROPERTY(int model READ model WRITE setModel NOTIFY changed)
    Q_PROPERTY(QString languageNote READ languageNote CONSTANT)
    Q_PROPERTY(bool liveTranscript READ liveTranscript WRITE setLiveTranscript NOTIFY changed)
    Q_PROPERTY(bool keepAudio READ keepAudio WRITE setKeepAudio NOTIFY changed)

public:
    static RecordingSettings* create(const QQmlEngine* engine, const QJSEngine* scripts);

    /// Speech models are looked for under `dataDirectories`.
    explicit RecordingSettings(AppModel& model,
                               std::vector<std::filesystem::path> dataDirectories = SpeechModels::dataDirectories());

    [[nodiscard]] QList<QString> languages() const;
    [[nodiscard]] int language() const;
    void setLanguage(int language);
    [[nodiscard]] QString otherLanguage() const;
    [[nodiscard]] QString languageDetail() const;
    [[nodiscard]] bool hasSeveralModels() const;
    [[nodiscard]] int model() const;
    void setModel(int model);
    [[nodiscard]] static QString languageNote();

    [[nodiscard]] bool liveTranscript() const { return model_.settings.liveTranscript.value(); }

    void setLiveTranscript(bool isLive) { model_.settings.liveTranscript = isLive; }

    [[nodiscard]] bool keepAudio() const { return model_.settings.keepAudio.value(); }

    void setKeepAudio(bool keeps) { model_.settings.keepAudio = keeps; }

    /// Looks which languages there are models for.
    Q_INVOKABLE void look() { lookForLanguages(); }

    Q_INVOKABLE void importRecording() { model_.chooseImport(); }

Q_SIGNALS:
    void changed();

private:
    QCoro::Task<> lookForLanguages();

    AppModel& model_;
    std::vector<std::filesystem::path> dataDirectories_;
    std::vector<SpeechModel> models_;
    std::vector<Permissions::Language> languages_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
