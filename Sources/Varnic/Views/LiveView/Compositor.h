#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <cstdint>
#include <optional>

namespace varnic {

/// Whether windows can be seen through. Without a compositor what an X window leaves transparent is black. Compositors
/// come and go with a setting. Main thread.
class Compositor : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT

public:
    explicit Compositor(QObject* parent = nullptr);

    /// True where there is no X server.
    [[nodiscard]] bool isOn() const { return isOn_; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

Q_SIGNALS:
    void changed();

private:
    void refresh();

    /// The selection that the compositor of our screen owns (Extended Window Manager Hints).
    std::uint32_t selection_ = 0;
    /// The event by which the server tells Qt, which asks for it, of another owner.
    std::optional<std::uint8_t> ownerChange_;
    bool isOn_ = true;
};

} // namespace varnic
