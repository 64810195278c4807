#include "Varnic/SelfTest/SelfTest.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/Persistence.h"
#include "Varnic/SelfTest/StandIns.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "Varnic/Shell/AppDelegate.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string_view>

namespace varnic::SelfTest {

namespace {

constexpr const char* modeVariable = "VARNIC_SELFTEST";

QCoro::Task<> runMode(AppModel& model, AppDelegate& shell, const StandIns& standIns, Checks& checks) {
    std::optional<std::string> failure;
    UserJourney journey(model, shell, standIns, checks);
    try {
        if (std::string_view(std::getenv(modeVariable)) == "persist") {
            co_await checkPersistence(model, checks);
        } else {
            co_await journey.run();
        }
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (failure) {
        checks.check(false, "the self-test came to its end", *failure);
    }
}

} // namespace

bool isAskedFor() {
    return std::getenv(modeVariable) != nullptr;
}

std::optional<std::string> refusal() {
    const char* folder = std::getenv("VARNIC_DATA_DIR");
    if (folder == nullptr || *folder == '\0') {
        return "FAIL refusing to run without VARNIC_DATA_DIR";
    }
    return std::nullopt;
}

QCoro::Task<> run(AppModel& model, AppDelegate& shell) {
    // Whoever reads along through a pipe sees each line at once.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    fmt::print(stdout, "Varnic self-test ({})\n", model.dataDirectory().string());
    Checks checks;
    const StandIns standIns(model, shell);
    co_await runMode(model, shell, standIns, checks);
    standIns.closingChecks(checks);
    fmt::print(stdout, "{}\n", checks.verdict());
    std::fflush(stdout);
    shell.terminate();
}

} // namespace varnic::SelfTest
