#pragma once

#include "Varnic/LoopExecutor.h"
#include "Varnic/SerialQueue.h"

#include <QCoro/QCoroTask>

#include <coroutine>
#include <exception>
#include <expected>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace varnic {

/// Blocking work off the main thread, a thread for each piece, since most of it waits. Main thread.
namespace Background {

/// The work must not throw.
void start(std::move_only_function<void()> work);

/// Whether something that was started isn't done yet.
bool isBusy();

/// Waits for all that was started.
void waitForDone();

/// Waits for all that was started, lets the flows that wait for it go on, and waits for what those start: for the end
/// of a program, when what the flows work on is gone.
void finish();

} // namespace Background

// Work awaited by flows on the main thread. What it uses must live until it is done, also when nobody waits for it any
// more.

namespace detail {

/// Hands work to another thread and goes on where it was awaited, with its result or its exception.
template <typename Work, typename Post>
class Handover {
public:
    using Result = std::invoke_result_t<const Work&>;

    Handover(const Work& work, Post post) : work_(work), post_(std::move(post)) {}

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> flow) {
        post_([this, flow, loop = &LoopExecutor::main()] {
            run();
            loop->post([flow] { flow.resume(); });
        });
    }

    Result await_resume() {
        if (!outcome_->has_value()) {
            std::rethrow_exception(outcome_->error());
        }
        if constexpr (!std::is_void_v<Result>) {
            return std::move(**outcome_);
        }
    }

private:
    using Outcome = std::expected<Result, std::exception_ptr>;

    void run() {
        try {
            if constexpr (std::is_void_v<Result>) {
                work_();
                outcome_.emplace();
            } else {
                outcome_.emplace(work_());
            }
        } catch (...) {
            outcome_.emplace(std::unexpect, std::current_exception());
        }
    }

    const Work& work_;
    Post post_;
    std::optional<Outcome> outcome_;
};

template <typename Work, typename Post>
QCoro::Task<std::invoke_result_t<const Work&>> awaitWork(Work work, Post post) {
    Handover<Work, Post> handover(work, std::move(post));
    co_return co_await std::move(handover);
}

} // namespace detail

// A lambda with captures may not be a temporary of a co_await expression: g++ 12 destroys its captures twice
// (https://gcc.gnu.org/PR99576). Hence the work is a variable, and the compiler refuses anything else.

/// On a thread of its own. Throws what the work throws.
template <typename Work>
QCoro::Task<std::invoke_result_t<const Work&>> inBackground(const Work& work) {
    return detail::awaitWork(work, [](auto posted) { Background::start(std::move(posted)); });
}

/// On the queue, which must outlive it, behind what waits there. Throws what the work throws.
template <typename Work>
QCoro::Task<std::invoke_result_t<const Work&>> onQueue(SerialQueue& queue, const Work& work) {
    return detail::awaitWork(work, [&queue](auto posted) { queue.async(std::move(posted)); });
}

template <typename Work>
void inBackground(const Work&& work) = delete;
template <typename Work>
void onQueue(SerialQueue& queue, const Work&& work) = delete;

} // namespace varnic
