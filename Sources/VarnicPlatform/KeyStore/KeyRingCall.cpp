#include "VarnicPlatform/KeyStore/KeyRingCall.h"

#include <condition_variable>
#include <mutex>

namespace varnic {

KeyRingCall::KeyRingCall(std::chrono::milliseconds patience, const std::stop_token& stop)
    : cancellable_(g_cancellable_new()), onStop_(stop, [this] { g_cancellable_cancel(cancellable_.get()); }),
      clock_([this, patience](const std::stop_token& isOver) {
          std::mutex lock;
          std::unique_lock held(lock);
          std::condition_variable_any never;
          never.wait_for(held, isOver, patience, [] { return false; });
          if (!isOver.stop_requested()) {
              g_cancellable_cancel(cancellable_.get());
          }
      }) {}

KeyRingCall::~KeyRingCall() {
    g_clear_error(&error_);
}

GError** KeyRingCall::receiver() {
    g_clear_error(&error_);
    return &error_;
}

KeyState KeyRingCall::state() const {
    const auto is = [this](GQuark domain, int code) { return g_error_matches(error_, domain, code) == TRUE; };
    if (is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) || is(G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
        is(G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND)) {
        return KeyState::noKeyRing;
    }
    if (is(G_IO_ERROR, G_IO_ERROR_CANCELLED) || is(G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
        is(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) || is(G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
        is(G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT)) {
        return KeyState::unanswered;
    }
    // Without a session bus there is none either.
    return g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr) == nullptr ? KeyState::noKeyRing : KeyState::failed;
}

std::string KeyRingCall::message() const {
    if (error_ == nullptr) {
        return "No reason was given";
    }
    switch (state()) {
    case KeyState::noKeyRing:
        return "No key ring is running";
    case KeyState::unanswered:
        return "The key ring doesn’t answer";
    default:
        g_dbus_error_strip_remote_error(error_);
        return error_->message;
    }
}

} // namespace varnic
