#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// How wide the columns of the main window are, in points, and which of them show. Widths last beyond the program's
/// end. Main thread.
class Columns : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// To be kept at the width of the window.
    Q_PROPERTY(qreal windowWidth READ windowWidth WRITE setWindowWidth NOTIFY windowWidthChanged)
    Q_PROPERTY(bool showsSidebar READ showsSidebar NOTIFY showsSidebarChanged)
    /// 190 to 270.
    Q_PROPERTY(qreal sidebarWidth READ sidebarWidth WRITE setSidebarWidth NOTIFY sidebarWidthChanged)
    /// 250 to 380.
    Q_PROPERTY(qreal listWidth READ listWidth WRITE setListWidth NOTIFY listWidthChanged)

public:
    static Columns* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit Columns(AppModel& model, QObject* parent = nullptr);

    /// Whether there is room for the sidebar: not beside an open transcript in a narrow window.
    static bool hasRoomForSidebar(qreal windowWidth, bool showTranscript, bool isCall);

    [[nodiscard]] qreal windowWidth() const { return windowWidth_; }

    void setWindowWidth(qreal width);

    [[nodiscard]] bool showsSidebar() const { return showsSidebar_; }

    [[nodiscard]] qreal sidebarWidth() const { return sidebarWidth_; }

    void setSidebarWidth(qreal width);

    [[nodiscard]] qreal listWidth() const { return listWidth_; }

    void setListWidth(qreal width);

Q_SIGNALS:
    void windowWidthChanged();
    void showsSidebarChanged();
    void sidebarWidthChanged();
    void listWidthChanged();

private:
    void refresh();

    AppModel& model_;
    qreal windowWidth_ = 0;
    bool showsSidebar_ = true;
    qreal sidebarWidth_;
    qreal listWidth_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
