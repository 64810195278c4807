#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Shell/Menus.h"

#include <QAbstractListModel>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The entries of all menus of the window, one below the other, for the main window to draw and to listen to their
/// shortcuts. Main thread.
class MainMenu : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    enum Role {
        caption = Qt::UserRole,
        /// As Shortcut.sequence takes it; empty where the window has none to listen to.
        shortcut,
        /// As the user reads it.
        shortcutText,
        isEnabled,
        isCheckable,
        isChecked,
        /// The title of the menu that the entry is the first of, else empty.
        menuTitle,
        /// A line stands before the entry.
        beginsGroup
    };

    static MainMenu* create(const QQmlEngine* engine, const QJSEngine* scripts);

    MainMenu(AppModel& model, const std::vector<Menu>& menus, QObject* parent = nullptr);

    Q_INVOKABLE void perform(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    struct Row {
        MenuEntry entry;
        QString menuTitle;
    };

    void refresh();

    std::vector<Row> rows_;
    QPropertyNotifier transcriptWatcher_;
};

} // namespace varnic
