#include "Varnic/Views/LibraryViews/Columns.h"

#include "Varnic/Views/Context/ViewContext.h"

#include <QSettings>

#include <algorithm>
#include <utility>

namespace varnic {

namespace {

/// Narrower windows have no room for the sidebar beside a transcript.
constexpr qreal roomForAll = 1180;

struct Width {
    const char* key;
    qreal least;
    qreal ideal;
    qreal most;

    [[nodiscard]] qreal fit(qreal width) const { return std::clamp(width, least, most); }

    [[nodiscard]] qreal read(const QSettings& store) const { return fit(store.value(key, ideal).toDouble()); }
};

constexpr Width sidebar{"window/sidebarWidth", 190, 222, 270};
constexpr Width list{"window/listWidth", 250, 290, 380};

} // namespace

Columns* Columns::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new Columns(ViewContext::of(*engine).model);
}

Columns::Columns(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), sidebarWidth_(sidebar.read(model.settings.store())),
      listWidth_(list.read(model.settings.store())) {
    watchers_.push_back(model.selection.addNotifier([this] { refresh(); }));
    watchers_.push_back(model.showTranscript.addNotifier([this] { refresh(); }));
    connect(&model, &AppModel::notesChanged, this, [this](const ChangedNotes& changed) {
        if (const auto& selected = model_.selection.value(); selected && concerns(changed, *selected)) {
            refresh();
        }
    });
}

bool Columns::hasRoomForSidebar(qreal windowWidth, bool showTranscript, bool isCall) {
    return windowWidth >= roomForAll || !showTranscript || !isCall;
}

void Columns::setWindowWidth(qreal width) {
    if (std::exchange(windowWidth_, width) != width) {
        Q_EMIT windowWidthChanged();
        refresh();
    }
}

void Columns::refresh() {
    const Note* selected = model_.note(model_.selection.value());
    const bool isCall = selected != nullptr && selected->isCall();
    const bool shows = hasRoomForSidebar(windowWidth_, model_.showTranscript.value(), isCall);
    if (std::exchange(showsSidebar_, shows) != shows) {
        Q_EMIT showsSidebarChanged();
    }
}

void Columns::setSidebarWidth(qreal width) {
    const qreal fit = sidebar.fit(width);
    if (std::exchange(sidebarWidth_, fit) != fit) {
        model_.settings.store().setValue(sidebar.key, fit);
        Q_EMIT sidebarWidthChanged();
    }
}

void Columns::setListWidth(qreal width) {
    const qreal fit = list.fit(width);
    if (std::exchange(listWidth_, fit) != fit) {
        model_.settings.store().setValue(list.key, fit);
        Q_EMIT listWidthChanged();
    }
}

} // namespace varnic
