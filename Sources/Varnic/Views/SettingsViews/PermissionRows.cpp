#include "Varnic/Views/SettingsViews/PermissionRows.h"

#include "Varnic/Background.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "Varnic/Views/SettingsViews/FolderView.h"
#include "VarnicCore/Files/LibraryError.h"
#include "VarnicCore/Models/Wording.h"

#include <QPointer>

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varnic {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 1s;

/// What the user allowed by a button; agreeing to the reminder before a call is the other way.
constexpr const char* allowedKey = "recordingAllowed";

constexpr int speechRow = 2;
constexpr std::array settingsRows{SettingsRow::microphone, SettingsRow::systemAudio, SettingsRow::speech};
constexpr std::array<std::string_view, 3> settingsDetails{
    "Your side of the call.", "Their side — Varnic captures the Mac’s sound only, never the screen.",
    "Writes the transcript on this Mac (on-device only)."};

SetupRow row(int id, const Permission& permission, bool inSettings) {
    std::string detail = permission.remedy;
    if (!permission.isMissing) {
        detail = inSettings ? settingsDetails.at(static_cast<std::size_t>(id)) : permission.purpose;
    }
    return {.id = id,
            .title = QString::fromStdString(permission.title),
            .detail = QString::fromStdString(Wording::shown(detail)),
            .state = permission.state};
}

} // namespace

PermissionRows::PermissionRows(QObject* parent) : RowModel<SetupRow>(parent) {
    connect(&tick_, &QTimer::timeout, this, &PermissionRows::look);
}

void PermissionRows::componentComplete() {
    model_ = &ViewContext::of(this).model;
    Q_EMIT stateChanged();
    tick_.start(lookInterval);
    look();
}

QString PermissionRows::explanation() {
    return QString::fromStdString(Wording::shown(
        "Varnic records two tracks: your microphone, and the sound your Mac plays — the other side of any Zoom, Meet, "
        "Teams, FaceTime or browser call. Varnic asks for audio only and never looks at your screen."));
}

/// Asking the sound system takes a moment, so one question at a time.
QCoro::Task<> PermissionRows::look() {
    if (std::exchange(isLooking_, true)) {
        co_return;
    }
    const QPointer self(this);
    const auto survey = [saidYes = isAllowed(), language = model_->settings.language(),
                         reader = model_->region.locale] { return Permissions::look(saidYes, language, reader); };
    const Permissions::Findings findings = co_await inBackground(survey);
    if (self) {
        isLooking_ = false;
        show(findings);
    }
}

void PermissionRows::show(const Permissions::Findings& findings) {
    std::vector<SetupRow> rows;
    for (const Permission& permission :
         Permissions::described(findings, model_->settings.language().locale, model_->region.locale)) {
        rows.push_back(row(static_cast<int>(rows.size()), permission, inSettings_));
    }
    setRows(rows);
    states_ = findings.states;
    Q_EMIT stateChanged();
}

bool PermissionRows::canRecord() const {
    return states_.mic == PermissionState::granted && states_.screen == PermissionState::granted;
}

bool PermissionRows::canRecordMySideOnly() const {
    return states_.mic == PermissionState::granted && states_.screen != PermissionState::granted;
}

bool PermissionRows::isAllowed() const {
    // Bindings ask before this is complete.
    return model_ != nullptr &&
           (model_->settings.consentSeen.value() || model_->settings.store().value(allowedKey).toBool());
}

void PermissionRows::allow() {
    model_->settings.store().setValue(allowedKey, true);
    Q_EMIT stateChanged();
    look();
}

void PermissionRows::open(int row) {
    if (!inSettings_) {
        model_->desktop.openSettings(settingsRows.at(static_cast<std::size_t>(row)));
        return;
    }
    if (row == speechRow) {
        showModels();
        return;
    }
    const auto described = Permissions::described(states_, model_->settings.language().locale);
    if (!Permissions::openSettings(described.at(static_cast<std::size_t>(row)).pane)) {
        model_->flash({.text = "No settings program was found", .symbol = "exclamationmark.triangle"});
    }
}

void PermissionRows::showModels() {
    try {
        showFolder(*model_, Permissions::modelsFolder());
    } catch (const LibraryError& error) {
        model_->flash({.text = error.what(), .symbol = "exclamationmark.triangle"});
    }
}

void PermissionRows::close() {
    model_->showSetup = false;
}

void PermissionRows::record() {
    model_->showSetup = false;
    model_->toggleRecording();
}

void PermissionRows::recordMySideOnly() {
    model_->showSetup = false;
    model_->startRecording(true);
}

QVariant PermissionRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SetupRow& row = rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
    case title:
        return row.title;
    case detail:
        return row.detail;
    case isGranted:
        return row.state == PermissionState::granted;
    case isDenied:
        return row.state == PermissionState::denied;
    case remedy:
        return inSettings_ && row.id == speechRow ? QStringLiteral("Open Models Folder")
                                                  : QStringLiteral("Open Settings");
    default:
        return {};
    }
}

QHash<int, QByteArray> PermissionRows::roleNames() const {
    return {{title, "title"}, {detail, "detail"}, {isGranted, "isGranted"}, {isDenied, "isDenied"}, {remedy, "remedy"}};
}

} // namespace varnic
