#include "Varnic/Views/LibraryViews/RecordingSetup.h"

#include "Varnic/Background.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Wording.h"

#include <QPointer>

#include <chrono>
#include <utility>
#include <vector>

namespace varnic {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 1s;

SetupRow row(int id, const Permission& permission) {
    const bool isReady = permission.state == PermissionState::granted;
    return {.id = id,
            .title = QString::fromStdString(permission.title),
            .detail = QString::fromStdString(isReady ? permission.purpose : permission.remedy),
            .isReady = isReady,
            .pane = QString::fromStdString(permission.pane)};
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
    const auto survey = [locale = model_->settings.localeID.value(), reader = model_->region.locale] {
        return Permissions::look(true, locale, reader);
    };
    const Permissions::Findings findings = co_await inBackground(survey);
    if (self) {
        isLooking_ = false;
        show(findings);
    }
}

void RecordingSetup::show(const Permissions::Findings& findings) {
    std::vector<SetupRow> rows;
    for (const Permission& permission :
         Permissions::described(findings, model_->settings.localeID.value(), model_->region.locale)) {
        rows.push_back(row(static_cast<int>(rows.size()), permission));
    }
    setRows(std::move(rows));
    states_ = findings.states;
    Q_EMIT stateChanged();
}

bool RecordingSetup::canRecord() const {
    return states_.mic == PermissionState::granted && states_.screen == PermissionState::granted;
}

bool RecordingSetup::canRecordMySideOnly() const {
    return states_.mic == PermissionState::granted && states_.screen != PermissionState::granted;
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
