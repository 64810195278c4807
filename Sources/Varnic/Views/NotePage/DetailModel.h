#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QStringList>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// What the detail column shows. Main thread.
class DetailModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    /// The page of the running recording.
    Q_PROPERTY(bool live READ live NOTIFY changed)
    /// The note whose page is shown, as a list of one; empty while none is.
    Q_PROPERTY(QStringList notes READ notes NOTIFY changed)
    /// Nothing is open.
    Q_PROPERTY(bool empty READ empty NOTIFY changed)

public:
    using QObject::QObject;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] bool live() const { return live_; }

    [[nodiscard]] QStringList notes() const { return notes_; }

    [[nodiscard]] bool empty() const { return !live_ && notes_.isEmpty(); }

    Q_INVOKABLE void newNote();
    Q_INVOKABLE void record();

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel* app_ = nullptr;
    bool live_ = false;
    QStringList notes_;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
