#include "Varnic/Views/Context/ViewContext.h"

#include <QQmlEngine>
#include <QVariant>

#include <memory>

namespace varnic {

namespace {

constexpr const char* property = "viewContext";

using Shared = std::shared_ptr<const ViewContext>;

} // namespace

void ViewContext::giveTo(QQmlEngine& engine) const {
    engine.setProperty(property, QVariant::fromValue(std::make_shared<const ViewContext>(*this)));
}

const ViewContext& ViewContext::of(const QQmlEngine& engine) {
    const auto context = engine.property(property).value<Shared>();
    if (!context) {
        qFatal("A QML engine needs its ViewContext before it loads views.");
    }
    return *context;
}

const ViewContext& ViewContext::of(const QObject* element) {
    const QQmlEngine* engine = qmlEngine(element);
    if (engine == nullptr) {
        qFatal("Only an element that a QML engine made has a ViewContext.");
    }
    return of(*engine);
}

} // namespace varnic
