#pragma once

#include "VarnicCore/AISummariser/KeyStore.h"

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <thread>

namespace varnic {

/// What a call to the key ring is given to end by, and the error that it gives.
class KeyRingCall {
public:
    /// The call ends by itself after that time and soon after a request through `stop`.
    KeyRingCall(std::chrono::milliseconds patience, const std::stop_token& stop);
    KeyRingCall(const KeyRingCall&) = delete;
    KeyRingCall& operator=(const KeyRingCall&) = delete;
    ~KeyRingCall();

    [[nodiscard]] GCancellable* cancellable() const { return cancellable_.get(); }

    /// Receives the error of the next call in place of an older one.
    GError** receiver();

    [[nodiscard]] bool failed() const { return error_ != nullptr; }

    /// What kind of failure it was.
    [[nodiscard]] KeyState state() const;

    /// The reason, without the bus's own words in front and without a full stop.
    [[nodiscard]] std::string message() const;

private:
    struct Unref {
        void operator()(GCancellable* cancellable) const { g_object_unref(cancellable); }
    };

    std::unique_ptr<GCancellable, Unref> cancellable_;
    GError* error_ = nullptr;
    std::stop_callback<std::function<void()>> onStop_;
    std::jthread clock_;
};

} // namespace varnic
