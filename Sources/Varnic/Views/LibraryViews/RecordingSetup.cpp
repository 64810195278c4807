#include "Varnic/Views/LibraryViews/RecordingSetup.h"

#include "Varnic/Background.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicPlatform/Speech/SpeechModel.h"

#include <QPointer>
#include <QStringList>

#include <chrono>

namespace varnic {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 1s;

SetupRow row(int id, const char* title, PermissionState state, const char* purpose, QString remedy, const char* pane) {
    const bool isReady = state == PermissionState::granted;
    return {.id = id,
            .title = title,
            .detail = isReady ? QString(purpose) : std::move(remedy),
            .isReady = isReady,
            .pane = pane};
}

QString speechRemedy(const std::string& locale) {
    QString folder("~/.local/share/varnic/models");
    return QStringLiteral("No speech model is installed for %1. Put one into %2; calls are recorded without one, and "
                          "can be transcribed later.")
        .arg(QString::fromStdString(locale), folder);
}

} // namespace

RecordingSetup::RecordingSetup(QObject* parent) : RowModel<SetupRow>(parent) {
    connect(&tick_, &QTimer::timeout, this, &RecordingSetup::look);
}

void RecordingSetup::componentComplete() {
    model_ = &ViewContext::of(this).model;
    tick_.start(lookInterval);
    look();
}

QString RecordingSetup::explanation() {
    return QString::fromStdString(Wording::shown(
        "Varnic records two tracks: your microphone, and the sound your Mac plays — the other side of any Zoom, Meet, "
        "Teams, FaceTime or browser call. Varnic asks for audio only and never looks at your screen."));
}

/// Asking the sound system takes a moment, so one question at a time.
QCoro::Task<> RecordingSetup::look() {
    if (std::exchange(isLooking_, true)) {
        co_return;
    }
    const QPointer self(this);
    const auto survey = [locale = model_->settings.localeID.value()] {
        return Permissions::States{
            Permissions::microphone(true), Permissions::screen(true),
            Permissions::speech(true, locale, SpeechModels::installed(SpeechModels::dataDirectories()))};
    };
    const Permissions::States states = co_await inBackground(survey);
    if (self) {
        isLooking_ = false;
        show(states);
    }
}

void RecordingSetup::show(const Permissions::States& states) {
    setRows({row(0, "Microphone", states.mic, "Your side.",
                 "No microphone was found. Plug one in, or choose one in the sound settings.", "Privacy_Microphone"),
             row(1, "System Audio", states.screen, "Their side.",
                 "PipeWire runs no sound here, so the other side can’t be heard. Install pipewire and wireplumber, and "
                 "pipewire-pulse in place of PulseAudio.",
                 "Privacy_ScreenCapture"),
             row(2, "Speech Recognition", states.speech, "The transcript, on this computer.",
                 speechRemedy(model_->settings.localeID.value()), "Privacy_SpeechRecognition")});
    Q_EMIT stateChanged();
}

void RecordingSetup::record() {
    model_->showSetup = false;
    model_->toggleRecording();
}

void RecordingSetup::recordMySideOnly() {
    model_->showSetup = false;
    model_->startRecording(true);
}

QVariant RecordingSetup::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SetupRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case title:
        return row.title;
    case detail:
        return row.detail;
    case isReady:
        return row.isReady;
    case pane:
        return row.pane;
    default:
        return {};
    }
}

QHash<int, QByteArray> RecordingSetup::roleNames() const {
    return {{title, "title"}, {detail, "detail"}, {isReady, "isReady"}, {pane, "pane"}};
}

} // namespace varnic
