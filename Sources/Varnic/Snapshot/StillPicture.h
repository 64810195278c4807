#pragma once

#include <QCoro/QCoroTask>
#include <QImage>
#include <QQuickWindow>

#include <optional>

namespace varnic {

/// What the window shows once nothing in it moves any more and no work in the background may still change it; nothing
/// where it doesn't come to rest. Main thread; the window must be visible and outlive the task.
QCoro::Task<std::optional<QImage>> stillPicture(QQuickWindow& window);

} // namespace varnic
