#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>

#include <cstdint>
#include <optional>

namespace varnic {

/// A desktop notification that stands for the pill where no window can be kept in front, as under Wayland. It stays
/// while a recording runs, makes no sound, and has a button that stops the recording; a click shows the window. Does
/// nothing without a session bus. Main thread; must not outlive the model.
class RecordingNotice : public QObject {
    Q_OBJECT

public:
    explicit RecordingNotice(AppModel& model, QObject* parent = nullptr);

    void present();
    void orderOut();

private Q_SLOTS:
    void onActionInvoked(uint notification, const QString& action);
    void onActivationToken(uint notification, const QString& token);

private:
    void closeUnwanted();

    AppModel& model_;
    bool isWanted_ = false;
    bool isAsked_ = false;
    /// The one on show.
    std::optional<std::uint32_t> id_;
};

} // namespace varnic
