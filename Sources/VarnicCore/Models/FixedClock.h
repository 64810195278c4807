#pragma once

#include "VarnicCore/Models/Date.h"

namespace varnic {

/// While it lives, `currentDate` is this moment for the whole program: for what has to come out the same whenever it is
/// made. One at a time. Any thread.
class FixedClock {
public:
    explicit FixedClock(Date moment);
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;
    ~FixedClock();
};

} // namespace varnic
