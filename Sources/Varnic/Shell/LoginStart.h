#pragma once

#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <QObject>
#include <QProperty>

#include <string>

namespace varnic {

/// Whether Varnic is started in the background when the user logs in; off unless asked for. It is an entry of the
/// desktop and not a setting of ours, since the desktop's own settings may take it away. Main thread.
class LoginStart : public QObject {
    Q_OBJECT

public:
    /// The events must outlive this.
    explicit LoginStart(DesktopEvents& events, QObject* parent = nullptr);

    QProperty<bool> isOn{false};
    /// The user's sentence about what the desktop refused; empty where all went well.
    QProperty<std::string> problem;

    /// Looks how it is now; for a window that comes to the front.
    void look();

    /// Changes it; `isOn` follows, at once or when the desktop has answered, or doesn't where that says no.
    void set(bool shallStart);

private:
    DesktopEvents& events_;
};

} // namespace varnic
