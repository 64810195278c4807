#pragma once

#include <time.h> // NOLINT(modernize-deprecated-headers): the processor clock is POSIX's

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

/// What the benchmarks measure with.
namespace varnic::bench {

struct Cost {
    /// Seconds on the clock, and of all threads together on the processors.
    double elapsed = 0;
    double processor = 0;
};

inline double now(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

template <class Work>
Cost costOf(Work work) {
    const Cost begin{now(CLOCK_MONOTONIC), now(CLOCK_PROCESS_CPUTIME_ID)};
    work();
    return {now(CLOCK_MONOTONIC) - begin.elapsed, now(CLOCK_PROCESS_CPUTIME_ID) - begin.processor};
}

inline double median(std::vector<Cost> costs, double Cost::* what) {
    std::ranges::sort(costs, {}, what);
    return costs.at(costs.size() / 2).*what;
}

/// A new folder for temporary files, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "varnic-bench-XXXXXX").string()) {
        if (::mkdtemp(path_.data()) == nullptr) {
            throw std::runtime_error("cannot make " + path_);
        }
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] std::filesystem::path path() const { return path_; }

private:
    std::string path_;
};

} // namespace varnic::bench
