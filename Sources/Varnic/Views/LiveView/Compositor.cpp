#include "Varnic/Views/LiveView/Compositor.h"

#include "VarnicPlatform/Desktop/XConnection.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <string>
#include <string_view>

namespace varnic {

namespace {

xcb_connection_t* connection() {
    const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

int ownScreen() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0) {
        std::free(host);
    }
    return screen;
}

} // namespace

Compositor::Compositor(QObject* parent) : QObject(parent) {
    xcb_connection_t* x = connection();
    if (x == nullptr) {
        return;
    }
    selection_ = xAtom(x, "_NET_WM_CM_S" + std::to_string(ownScreen()));
    constexpr std::string_view extension = "XFIXES";
    const XReply<xcb_query_extension_reply_t> fixes(
        xcb_query_extension_reply(x, xcb_query_extension(x, extension.size(), extension.data()), nullptr), std::free);
    if (fixes && fixes->present != 0) {
        ownerChange_ = fixes->first_event;
    }
    qApp->installNativeEventFilter(this);
    refresh();
}

void Compositor::refresh() {
    xcb_connection_t* x = connection();
    const XReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, selection_), nullptr), std::free);
    const bool isOn = reply && reply->owner != XCB_WINDOW_NONE;
    if (isOn != isOn_) {
        isOn_ = isOn;
        Q_EMIT changed();
    }
}

bool Compositor::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
    // The highest bit marks what another program has sent.
    constexpr std::uint8_t kind = 0x7F;
    if (ownerChange_ && eventType == "xcb_generic_event_t" &&
        (static_cast<const xcb_generic_event_t*>(message)->response_type & kind) == *ownerChange_) {
        refresh();
    }
    return false;
}

} // namespace varnic
