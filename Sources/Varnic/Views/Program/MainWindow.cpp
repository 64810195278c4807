#include "Varnic/Views/Program/MainWindow.h"

#include "Varnic/AppModel/AppModel.h"

#include <QTimer>

#include <chrono>
#include <stdexcept>
#include <utility>

namespace varnic {

MainWindow::MainWindow(const ViewContext& context) {
    engine_.addImportPath("qrc:/qt/qml");
    context.giveTo(engine_);
    engine_.load(QUrl("qrc:/qt/qml/Varnic/LibraryViews/Main.qml"));
    window_ = engine_.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine_.rootObjects().front());
    if (window_ == nullptr) {
        throw std::runtime_error("The main window couldn’t be made.");
    }
    place_ = std::make_unique<WindowPlace>(*window_, context.model.settings.store());
}

void MainWindow::activate() {
    if (window_->windowStates().testFlag(Qt::WindowMinimized)) {
        window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    }
    // Not show(), which takes a window back to its normal size.
    window_->setVisible(true);
    window_->raise();
    window_->requestActivate();
}

void MainWindow::afterFirstPicture(std::function<void()> work) {
    using namespace std::chrono_literals;
    auto* const wait = new QTimer(window_); // the window owns it
    wait->setSingleShot(true);
    QObject::connect(wait, &QTimer::timeout, window_, std::move(work));
    const auto end = [wait] {
        if (wait->isActive()) {
            wait->start(0);
        }
    };
    QObject::connect(window_, &QQuickWindow::frameSwapped, wait, end,
                     Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    wait->start(500ms);
}

} // namespace varnic
