#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQmlIntegration>

namespace varnic {

/// The notice that shows now or, while none does, the last one, for it takes a moment to leave the screen. Main thread.
class Toast : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool shows READ shows NOTIFY changed)
    /// Different for each notice; empty before the first.
    Q_PROPERTY(QString toastId READ toastId NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed)
    Q_PROPERTY(bool undoable READ undoable NOTIFY changed)

public:
    static Toast* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit Toast(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] bool shows() const { return model_.toast.value().has_value(); }

    [[nodiscard]] QString toastId() const;
    [[nodiscard]] QString text() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] bool undoable() const;

    /// Nothing for a notice that is leaving.
    Q_INVOKABLE void undo() const;

    Q_INVOKABLE void dismiss() { model_.toast = std::nullopt; }

Q_SIGNALS:
    void changed();

private:
    void take();

    AppModel& model_;
    std::optional<ToastMessage> last_;
    QPropertyNotifier watcher_;
};

} // namespace varnic
