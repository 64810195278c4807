#include "Varnic/Views/SettingsViews/HotkeySettings.h"

#include "Varnic/Shell/HotkeyKeys.h"
#include "Varnic/Views/Context/ViewContext.h"

#include <algorithm>
#include <utility>

namespace varnic {

HotkeySettings* HotkeySettings::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    const ViewContext& context = ViewContext::of(*engine);
    return new HotkeySettings(context.model, context.shell);
}

HotkeySettings::HotkeySettings(AppModel& model, AppDelegate* shell, QObject* parent)
    : QObject(parent), model_(model), shell_(shell) {
    const auto follow = [this](auto& property) {
        watchers_.push_back(property.addNotifier([this] { Q_EMIT changed(); }));
    };
    follow(model.settings.hotkeyEnabled);
    follow(model.settings.hotkey);
    follow(model.settings.hotkeyKeys);
    if (shell != nullptr) {
        follow(shell->hotkeyNote);
        follow(shell->hotkeyState);
    }
}

bool HotkeySettings::hasOwn() const {
    return keys(model_.settings) != keys(model_.settings.hotkey.value());
}

QList<QString> HotkeySettings::choices() const {
    QList<QString> titles;
    for (const HotkeyChoice choice : allHotkeyChoices) {
        titles << QString::fromStdString(keys(choice).title());
    }
    if (hasOwn()) {
        titles << QString::fromStdString(keys(model_.settings).title());
    }
    return titles;
}

int HotkeySettings::selected() const {
    return hasOwn() ? static_cast<int>(allHotkeyChoices.size()) : static_cast<int>(model_.settings.hotkey.value());
}

void HotkeySettings::setSelected(int choice) {
    if (choice >= static_cast<int>(allHotkeyChoices.size())) {
        return;
    }
    model_.settings.hotkey = allHotkeyChoices.at(static_cast<std::size_t>(choice));
    model_.settings.hotkeyKeys = std::string();
}

QString HotkeySettings::note() const {
    return shell_ == nullptr ? QString() : QString::fromStdString(shell_->hotkeyNote.value());
}

QString HotkeySettings::command() const {
    return shell_ != nullptr && shell_->hotkeyState.value() == Hotkey::State::unavailable ? Hotkey::command : QString();
}

void HotkeySettings::copyCommand() const {
    model_.desktop.copyText(Hotkey::command);
}

void HotkeySettings::setRecording(bool isRecording) {
    if (std::exchange(isRecording_, isRecording) == isRecording) {
        return;
    }
    problem_.clear();
    if (shell_ != nullptr) {
        shell_->setHotkeyPaused(isRecording);
    }
    Q_EMIT changed();
}

void HotkeySettings::press(int key, int modifiers) {
    const auto combination = pressed(key, Qt::KeyboardModifiers(modifiers));
    if (!combination) {
        return;
    }
    if (const auto problem = combination->problem()) {
        problem_ = QString::fromStdString(*problem);
        Q_EMIT changed();
        return;
    }
    const auto isThis = [&combination](HotkeyChoice choice) { return keys(choice) == *combination; };
    const auto* const choice = std::ranges::find_if(allHotkeyChoices, isThis);
    if (choice != allHotkeyChoices.end()) {
        setSelected(static_cast<int>(choice - allHotkeyChoices.begin()));
    } else {
        model_.settings.hotkeyKeys = combination->title();
    }
    setRecording(false);
}

} // namespace varnic
