#pragma once

class QObject;
class QQmlEngine;

namespace brevin {
class Updater;
}

namespace varnic {

class AppDelegate;
class AppModel;

/// What the views of a QML engine show and work on. Names only: a view includes the headers of the parts it uses. All
/// parts must outlive the engine. Main thread.
struct ViewContext {
    AppModel& model;
    /// Null where views are shown without the program around them, as single pages are in tests.
    AppDelegate* shell = nullptr;
    /// Null as well there.
    brevin::Updater* updater = nullptr;

    /// Makes this the context of the engine, before any QML is loaded.
    void giveTo(QQmlEngine& engine) const;

    /// The context of an engine, for the `create` functions of QML singletons. Valid as long as the engine. Ends the
    /// program where the engine was given none.
    static const ViewContext& of(const QQmlEngine& engine);

    /// The context of the engine that made the element; to be asked once it is complete.
    static const ViewContext& of(const QObject* element);
};

} // namespace varnic
