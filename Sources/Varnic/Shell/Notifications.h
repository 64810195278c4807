#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace varnic {

/// Shows as desktop notifications what would go unseen while the window is not in front: that a call is transcribed,
/// warnings about a running recording, and toasts that warn. A click shows the window, and the call. Does nothing
/// without a session bus. Main thread; must not outlive the model.
class Notifications : public QObject {
    Q_OBJECT

public:
    explicit Notifications(AppModel& model, QObject* parent = nullptr);

    std::function<bool()> isWindowInFront = [] { return true; };
    /// Whether a window in front shows the toasts: not only the main one does.
    std::function<bool()> isToastInSight = [] { return true; };

private Q_SLOTS:
    void onActivationToken(uint notification, const QString& token);
    void onActionInvoked(uint notification, const QString& action);
    void onClosed(uint notification, uint reason);

private:
    void onProcessingChanged();
    void tellFiled(const Uuid& id);
    /// One that `isUrgent` stays until it is dismissed.
    void post(const std::string& text, std::optional<Uuid> note, bool isUrgent);

    AppModel& model_;
    std::set<Uuid> processing_;
    /// The note that each notification on show is about.
    std::map<uint, std::optional<Uuid>> shown_;
    std::map<uint, std::string> tokens_;
    QPropertyNotifier processingWatcher_;
    QPropertyNotifier toastWatcher_;
};

} // namespace varnic
