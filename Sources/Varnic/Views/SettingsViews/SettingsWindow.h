#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QQmlParserStatus>
#include <QQuickWindow>
#include <QtQmlIntegration>

namespace varnic {

/// The window of all settings. It keeps its tab beyond the program's end. Main thread.
class SettingsWindow : public QQuickWindow, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(Tab tab READ tab WRITE setTab NOTIFY tabChanged)
    /// The row that the window was opened for, which is marked.
    Q_PROPERTY(Row row READ row NOTIFY rowChanged)

public:
    enum Tab { General, Recording, Summaries, About };
    Q_ENUM(Tab)

    /// The cases of SettingsRow.
    enum Row { None, Microphone, SystemAudio, Speech, Language, LibraryFolder, Hotkey, AI, Provider, Key, Updates };
    Q_ENUM(Row)

    explicit SettingsWindow(QWindow* parent = nullptr);

    [[nodiscard]] Tab tab() const { return tab_; }

    /// A mark goes with the tab that it is on.
    void setTab(Tab tab);

    [[nodiscard]] Row row() const { return row_; }

    /// Shows the window in front, at the row.
    void open(SettingsRow row);

    /// Asks the program to end.
    Q_INVOKABLE void quit();

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void tabChanged();
    void rowChanged();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void setRow(Row row);
    void placeOverFront();

    AppModel* model_ = nullptr;
    Tab tab_ = General;
    Row row_ = None;
    bool isPlaced_ = false;
};

} // namespace varnic
