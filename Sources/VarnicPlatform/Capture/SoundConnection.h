#pragma once

#include "VarnicPlatform/Capture/SoundGraph.h"

#include <pipewire/pipewire.h>

#include <functional>
#include <memory>

namespace varnic {

/// A connection to PipeWire with a thread that serves it. Everything but construction and destruction is called with
/// the loop locked, or from the loop's own thread.
class SoundConnection {
public:
    /// Locks the loop as long as it lives. Not for the loop's thread.
    class Lock {
    public:
        explicit Lock(const SoundConnection& connection) : loop_(connection.loop_.get()) { pw_thread_loop_lock(loop_); }

        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

        ~Lock() { pw_thread_loop_unlock(loop_); }

    private:
        pw_thread_loop* loop_;
    };

    /// Starts the thread; `onChange` is called in it after each change of the graph. Throws CaptureError
    /// `systemAudioFailed` where that cannot be done.
    explicit SoundConnection(std::function<void()> onChange);
    SoundConnection(const SoundConnection&) = delete;
    SoundConnection& operator=(const SoundConnection&) = delete;
    /// What was made of `core` must be gone already.
    ~SoundConnection();

    /// Connects; false where there is no server.
    [[nodiscard]] bool open();
    /// What was made of `core` must be gone already.
    void close();

    [[nodiscard]] bool isOpen() const { return core_ != nullptr; }

    /// Whether the server has gone away since `open`.
    [[nodiscard]] bool isLost() const { return isLost_; }

    [[nodiscard]] pw_core* core() const { return core_; }

    [[nodiscard]] const SoundGraph& graph() const { return *graph_; }

    /// Waits, with the lock given up meanwhile, until the condition holds; gives whether it does after so many seconds.
    [[nodiscard]] bool waitFor(const std::function<bool()>& condition, double seconds) const;

    /// Waits until the server has told all that there is: false where it does not answer within so many seconds.
    [[nodiscard]] bool settle(double seconds);

    /// Asks the server to answer behind what it has been asked before, and whether it has; for those that can't wait.
    void ask();

    [[nodiscard]] bool hasAnswered() const { return answered_ == asked_; }

    /// Calls the function in the loop's thread again and again, until `stopTicking`.
    void every(double seconds, std::function<void()> function);
    void stopTicking();

private:
    struct Events;

    struct Destroy {
        void operator()(pw_thread_loop* loop) const { pw_thread_loop_destroy(loop); }

        void operator()(pw_context* context) const { pw_context_destroy(context); }
    };

    std::function<void()> onChange_;
    std::function<void()> onTick_;
    std::unique_ptr<pw_thread_loop, Destroy> loop_;
    std::unique_ptr<pw_context, Destroy> context_;
    pw_core* core_ = nullptr;
    spa_hook listener_{};
    std::unique_ptr<SoundGraph> graph_;
    spa_source* timer_ = nullptr;
    bool isLost_ = false;
    int answered_ = 0;
    int asked_ = 0;
};

} // namespace varnic
