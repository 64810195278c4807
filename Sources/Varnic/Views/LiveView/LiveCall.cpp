#include "Varnic/Views/LiveView/LiveCall.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Recording/RecordingHealth.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/Wording.h"

#include <QEasingCurve>

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// From one ring around the dot to the next: 1.1 seconds.
constexpr int pulseTicks = 22;

QString shown(std::string_view text) {
    return QString::fromStdString(Wording::shown(text));
}

} // namespace

LiveCall::LiveCall(AppModel& model, QObject* parent) : QObject(parent), model_(model), recorder_(model.recorder()) {
    connect(&recorder_, &RecordingController::stateChanged, this, &LiveCall::takeState);
    connect(&recorder_, &RecordingController::ticked, this, &LiveCall::takeTick);
    connect(&recorder_, &RecordingController::transcriptChanged, this, &LiveCall::takeTranscript);
    connect(&recorder_, &RecordingController::warningChanged, this, &LiveCall::sidesChanged);
    takeTranscript();
    takeState();
}

LiveCall* LiveCall::create(QQmlEngine* engine, QJSEngine* /*scripts*/) {
    return new LiveCall(ViewContext::of(*engine).model);
}

bool LiveCall::isBusy() const {
    return varnic::isBusy(recorder_.state());
}

bool LiveCall::isRecording() const {
    return varnic::isRecording(recorder_.state());
}

bool LiveCall::isPaused() const {
    return recorder_.isPaused();
}

QString LiveCall::stateName() const {
    if (std::holds_alternative<Session::Starting>(recorder_.state())) {
        return QStringLiteral("Starting");
    }
    if (std::holds_alternative<Session::Stopping>(recorder_.state())) {
        return QStringLiteral("Saving");
    }
    return isPaused() ? QStringLiteral("Paused") : QStringLiteral("Recording");
}

QString LiveCall::source() const {
    return QString::fromStdString(recorder_.source());
}

bool LiveCall::records(Speaker speaker) const {
    const std::vector<Speaker>& sides = recorder_.sides();
    return sides.empty() || std::ranges::find(sides, speaker) != sides.end();
}

double LiveCall::pulse() const {
    if (!isRecording() || isPaused()) {
        return 0;
    }
    const auto tick = static_cast<double>(ink_.end() % pulseTicks);
    return QEasingCurve(QEasingCurve::OutQuad).valueForProgress(tick / pulseTicks);
}

LiveSide LiveCall::side(Speaker speaker) const {
    const std::string_view name = label(speaker);
    LiveSide side{.name = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                  .detail = speaker == Speaker::you ? QStringLiteral("microphone") : shown("the Mac’s sound"),
                  .isOn = records(speaker)};
    if (!side.isOn) {
        side.detail = shown(RecordingHealth::missingSide(recorder_.sides()).value_or(""));
    }
    return side;
}

QString LiveCall::warning() const {
    const auto& warning = recorder_.warning();
    return warning && warning != RecordingHealth::missingSide(recorder_.sides()) ? shown(*warning) : QString();
}

QString LiveCall::placeholderTitle() const {
    if (!records(Speaker::them)) {
        return QStringLiteral("Recording your side.");
    }
    return records(Speaker::you) ? QStringLiteral("Recording both sides.") : QStringLiteral("Recording their side.");
}

QString LiveCall::placeholder() const {
    if (model_.lacksModel.value()) {
        return QStringLiteral(
            "No speech model is installed for this language. The call is recorded, and can be written "
            "down once there is one.");
    }
    return recorder_.hasLiveTranscript()
               ? QStringLiteral("What’s said writes itself here — your words in blue-black, theirs in red-brown.")
               : shown("The transcript is written on this Mac when you stop.");
}

void LiveCall::toggle() {
    model_.toggleRecording();
}

void LiveCall::stop() {
    model_.stopRecording();
}

void LiveCall::discard() {
    if (isRecording()) {
        model_.discardRecording();
    }
}

void LiveCall::pause() {
    recorder_.pause();
}

void LiveCall::resume() {
    recorder_.resume();
}

void LiveCall::copyHeadsUp() {
    model_.copyHeadsUp();
}

void LiveCall::takeState() {
    const bool begins = isRecording() && !wasRecording_;
    wasRecording_ = isRecording();
    if (begins) {
        ink_.begin(recorder_.samples());
        takeTranscript();
    }
    if (std::exchange(wasPaused_, isPaused()) != isPaused() && isPaused()) {
        ink_.append({}); // the pen falls to rest
    }
    setStamp();
    Q_EMIT stateChanged();
    Q_EMIT sidesChanged();
    Q_EMIT ticked();
}

void LiveCall::takeTick() {
    // The pen rests while nothing is recorded.
    if (!isPaused() && !recorder_.samples().empty()) {
        ink_.append(recorder_.samples().back());
        Q_EMIT ticked();
    }
    setStamp();
}

void LiveCall::takeTranscript() {
    setStamp();
    transcript_.show(recorder_.committed(), recorder_.partial());
}

void LiveCall::setStamp() {
    QString stamp = QString::fromStdString(Clock::stamp(recorder_.elapsed()));
    if (stamp != stamp_) {
        stamp_ = std::move(stamp);
        Q_EMIT stampChanged();
    }
}

} // namespace varnic
