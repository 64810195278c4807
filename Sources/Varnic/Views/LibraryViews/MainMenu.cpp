#include "Varnic/Views/LibraryViews/MainMenu.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Shell/AppDelegate.h"
#include "Varnic/Views/Context/ViewContext.h"

#include <QKeySequence>

#include <utility>

namespace varnic {

MainMenu* MainMenu::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    const ViewContext& context = ViewContext::of(*engine);
    return new MainMenu(context.model, context.shell != nullptr ? context.shell->menus().window : std::vector<Menu>());
}

MainMenu::MainMenu(AppModel& model, const std::vector<Menu>& menus, QObject* parent) : QAbstractListModel(parent) {
    for (const Menu& menu : menus) {
        QString title = QString::fromStdString(menu.title);
        for (const MenuEntry& entry : menu.entries) {
            rows_.push_back({entry, std::exchange(title, {})});
        }
    }
    connect(&model.recorder(), &RecordingController::stateChanged, this, &MainMenu::refresh);
    transcriptWatcher_ = model.showTranscript.addNotifier([this] { refresh(); });
}

void MainMenu::refresh() {
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {caption, isEnabled, isChecked});
}

void MainMenu::perform(int row) const {
    if (const MenuEntry& entry = rows_.at(static_cast<std::size_t>(row)).entry; entry.isEnabled()) {
        entry.perform();
    }
}

int MainMenu::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant MainMenu::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const QString keys = QString::fromStdString(row.entry.shortcut);
    switch (role) {
    case caption:
        return QString::fromStdString(row.entry.text());
    case shortcut:
        return row.entry.isPagesShortcut ? QString() : keys;
    case shortcutText:
        return QKeySequence(keys, QKeySequence::PortableText).toString(QKeySequence::NativeText);
    case isEnabled:
        return row.entry.isEnabled();
    case isCheckable:
        return row.entry.isChecked != nullptr;
    case isChecked:
        return row.entry.isChecked && row.entry.isChecked();
    case menuTitle:
        return row.menuTitle;
    case beginsGroup:
        return row.entry.beginsGroup;
    default:
        return {};
    }
}

QHash<int, QByteArray> MainMenu::roleNames() const {
    return {{caption, "caption"},     {shortcut, "shortcut"},       {shortcutText, "shortcutText"},
            {isEnabled, "isEnabled"}, {isCheckable, "isCheckable"}, {isChecked, "isChecked"},
            {menuTitle, "menuTitle"}, {beginsGroup, "beginsGroup"}};
}

} // namespace varnic
