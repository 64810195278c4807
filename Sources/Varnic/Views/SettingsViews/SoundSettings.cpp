#include "Varnic/Views/SettingsViews/SoundSettings.h"

#include "Varnic/Views/Context/ViewContext.h"

#include <algorithm>
#include <utility>

namespace varnic {

DeviceSide::DeviceSide(Speaker side, AppModel& model, DeviceList& devices)
    : side_(side), model_(model), devices_(devices) {
    watchers_.push_back(setting().addNotifier([this] {
        listen();
        Q_EMIT changed();
    }));
    watchers_.push_back(devices.list.addNotifier([this] { Q_EMIT changed(); }));
    watchers_.push_back(level_.notice.addNotifier([this] { Q_EMIT changed(); }));
    watchers_.push_back(level_.level.addNotifier([this] { Q_EMIT levelChanged(); }));
}

QProperty<DeviceChoice>& DeviceSide::setting() const {
    return isTheirs() ? model_.settings.heardOutput : model_.settings.microphone;
}

std::vector<SoundDevice> DeviceSide::known() const {
    const auto list = devices_.list.value().value_or(SoundDeviceList());
    return isTheirs() ? list.outputs : list.microphones;
}

std::vector<DeviceChoice> DeviceSide::rows() const {
    std::vector<DeviceChoice> rows(1);
    for (const SoundDevice& device : known()) {
        rows.push_back({.name = device.name, .label = device.label});
    }
    const DeviceChoice chosen = setting().value();
    if (std::ranges::find(rows, chosen.name, &DeviceChoice::name) == rows.end()) {
        rows.push_back(chosen);
    }
    return rows;
}

QList<QString> DeviceSide::choices() const {
    QList<QString> labels;
    for (const DeviceChoice& row : rows()) {
        labels << QString::fromStdString(row.label.empty() ? row.name : row.label);
    }
    labels.front() = isTheirs() ? QStringLiteral("All that is played") : QStringLiteral("System default");
    return labels;
}

QList<QString> DeviceSide::details() const {
    const std::vector<SoundDevice> devices = known();
    QList<QString> details(static_cast<qsizetype>(rows().size()));
    if (isTheirs()) {
        details.front() = QStringLiteral("By whatever program, on whatever device");
    } else if (!devices.empty()) {
        details.front() = "Now " + QString::fromStdString(devices.front().label);
    }
    if (rows().size() > devices.size() + 1) {
        details.back() = QStringLiteral("Not connected");
    }
    return details;
}

int DeviceSide::selected() const {
    const auto all = rows();
    return static_cast<int>(std::ranges::find(all, setting().value().name, &DeviceChoice::name) - all.begin());
}

void DeviceSide::setSelected(int choice) {
    setting() = rows().at(static_cast<std::size_t>(choice));
}

QString DeviceSide::notice() const {
    const DeviceChoice chosen = setting().value();
    auto notice = isTheirs() ? devices_.outputNotice(chosen) : devices_.microphoneNotice(chosen);
    if (!notice) {
        notice = level_.notice.value();
    }
    return QString::fromStdString(notice.value_or(""));
}

void DeviceSide::setListening(bool listens) {
    listens_ = listens;
    listen();
}

void DeviceSide::listen() {
    if (listens_) {
        level_.start(model_.settings.devices());
    } else {
        level_.stop();
    }
}

void SoundSettings::componentComplete() {
    AppModel& model = ViewContext::of(this).model;
    you_ = std::make_unique<DeviceSide>(Speaker::you, model, devices_);
    them_ = std::make_unique<DeviceSide>(Speaker::them, model, devices_);
    you_->setListening(listens_);
    them_->setListening(listens_);
    Q_EMIT ready();
}

void SoundSettings::setListens(bool listens) {
    if (std::exchange(listens_, listens) == listens) {
        return;
    }
    if (you_) {
        you_->setListening(listens);
        them_->setListening(listens);
    }
    Q_EMIT listensChanged();
}

} // namespace varnic
