#include "Varnic/Background.h"

#include <chrono>
#include <future>
#include <list>
#include <utility>

namespace varnic {

namespace {

/// What has been started; some of it has ended.
std::list<std::future<void>>& started() {
    static std::list<std::future<void>> all;
    return all;
}

void forgetDone() {
    started().remove_if([](const std::future<void>& one) {
        return one.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
}

} // namespace

void Background::start(std::move_only_function<void()> work) {
    forgetDone();
    started().push_back(std::async(std::launch::async, std::move(work)));
}

bool Background::isBusy() {
    forgetDone();
    return !started().empty();
}

void Background::waitForDone() {
    started().clear();
}

void Background::finish() {
    do {
        waitForDone();
        LoopExecutor::main().runPending();
    } while (isBusy());
}

} // namespace varnic
