#pragma once

#include "Varnic/SerialQueue.h"

#include <QCoro/QCoroFuture>
#include <QCoro/QCoroTask>
#include <QPromise>
#include <QThreadPool>

#include <exception>
#include <expected>
#include <functional>
#include <memory>
#include <type_traits>

/// Blocking work off the main thread, awaited by flows on it. What the work uses must live until it is done, also when
/// nobody waits for it any more.
namespace varnic {

/// The threads of `inBackground`; as many as it takes, since most of them wait.
QThreadPool& backgroundThreads();

namespace detail {

template <typename Result>
using Outcome = std::expected<Result, std::exception_ptr>;

template <typename Result>
Outcome<Result> outcome(const std::function<Result()>& work) {
    try {
        if constexpr (std::is_void_v<Result>) {
            work();
            return {};
        } else {
            return work();
        }
    } catch (...) {
        return std::unexpected(std::current_exception());
    }
}

/// Hands the work to `post` and goes on where it was awaited. An exception is carried as a value, since a QFuture would
/// lose its type.
template <typename Result, typename Post>
QCoro::Task<Result> awaitWork(Post post, std::function<Result()> work) {
    const auto promise = std::make_shared<QPromise<Outcome<Result>>>();
    promise->start();
    post([promise, work = std::move(work)] {
        promise->addResult(outcome(work));
        promise->finish();
    });
    Outcome<Result> result = co_await promise->future();
    if (!result) {
        std::rethrow_exception(result.error());
    }
    if constexpr (!std::is_void_v<Result>) {
        co_return std::move(*result);
    }
}

} // namespace detail

// A lambda with captures may not be a temporary of a co_await expression: g++ 12 destroys its captures twice
// (https://gcc.gnu.org/PR99576). Hence the work is a variable, and the compiler refuses anything else.

/// On a thread of its own. Throws what the work throws.
template <typename Work>
QCoro::Task<std::invoke_result_t<const Work&>> inBackground(const Work& work) {
    return detail::awaitWork<std::invoke_result_t<const Work&>>(
        [](std::function<void()> posted) { backgroundThreads().start(std::move(posted)); }, work);
}

/// On the queue, which must outlive it, behind what waits there. Throws what the work throws.
template <typename Work>
QCoro::Task<std::invoke_result_t<const Work&>> onQueue(SerialQueue& queue, const Work& work) {
    return detail::awaitWork<std::invoke_result_t<const Work&>>(
        [&queue](std::function<void()> posted) { queue.async(std::move(posted)); }, work);
}

template <typename Work>
void inBackground(const Work&& work) = delete;
template <typename Work>
void onQueue(SerialQueue& queue, const Work&& work) = delete;

} // namespace varnic
