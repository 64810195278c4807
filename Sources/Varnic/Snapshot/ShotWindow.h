#pragma once

#include "Varnic/Snapshot/Shots.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace varnic {

/// The window that a shot shows unless that is the main window, which gives null. It is not shown yet. Main thread.
/// Throws std::runtime_error where its QML cannot be loaded.
std::unique_ptr<QQuickWindow> ownWindow(const Shot& shot, QQmlEngine& engine);

} // namespace varnic
