#pragma once

#include "BrevinKit/UpdateFeed.h"

#include <string>
#include <variant>

namespace brevin {

/// The states of the updater.
namespace UpdatePhase {

/// Nothing is happening.
struct Idle {
    bool operator==(const Idle&) const = default;
};

/// A check that the user started is running.
struct Checking {
    bool operator==(const Checking&) const = default;
};

/// The check that the user started found nothing newer.
struct UpToDate {
    bool operator==(const UpToDate&) const = default;
};

/// A newer version exists and has not been downloaded.
struct Available {
    UpdateFeed feed;

    bool operator==(const Available&) const = default;
};

struct Downloading {
    UpdateFeed feed;
    /// 0 to 1.
    double progress = 0;

    bool operator==(const Downloading&) const = default;
};

/// The new version is staged and installs at quit.
struct Ready {
    UpdateFeed feed;

    bool operator==(const Ready&) const = default;
};

struct Failed {
    /// For the user.
    std::string message;

    bool operator==(const Failed&) const = default;
};

} // namespace UpdatePhase

using Phase = std::variant<UpdatePhase::Idle, UpdatePhase::Checking, UpdatePhase::UpToDate, UpdatePhase::Available,
                           UpdatePhase::Downloading, UpdatePhase::Ready, UpdatePhase::Failed>;

} // namespace brevin
