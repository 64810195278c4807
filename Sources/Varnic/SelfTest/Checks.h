#pragma once

#include <QCoro/QCoroTask>

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace varnic {

/// The promises of a self-test that were kept and broken, each told in a line on standard output. Main thread.
class Checks {
public:
    /// Tells whether what the sentence says is so, and counts it. The diagnostic is told of a broken promise only.
    /// Gives `condition` back.
    bool check(bool condition, std::string_view sentence, std::string_view diagnostic = {});

    /// The last line.
    [[nodiscard]] std::string verdict() const;

    /// Lets the program go on until the condition holds, which is looked at ten times a second; false where it does not
    /// within the time.
    static QCoro::Task<bool> until(std::chrono::milliseconds limit, std::function<bool()> condition);

private:
    int passes_ = 0;
    int fails_ = 0;
};

} // namespace varnic
