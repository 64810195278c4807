#pragma once

#include "VarnicCore/Files/FileDescriptor.h"
#include "VarnicPlatform/Desktop/BusConnection.h"
#include "VarnicPlatform/Desktop/DesktopEvents.h"

#include <functional>
#include <memory>

namespace varnic {

/// Tells when the computer is about to sleep, and can hold that up for the seconds that logind allows (5 unless
/// configured). Without logind it never tells. The thread that dispatches the events, which must outlive this.
class SleepWatch {
public:
    /// `done` lets the computer go to sleep; to be called once, during the call or later, at best before logind loses
    /// its patience.
    using WillSleep = std::function<void(std::function<void()> done)>;

    SleepWatch(DesktopEvents& events, WillSleep willSleep);
    SleepWatch(const SleepWatch&) = delete;
    SleepWatch& operator=(const SleepWatch&) = delete;
    ~SleepWatch() = default;

    /// While true sleep waits for `done`. To be set only while there is something to finish, since the user can see who
    /// holds up sleep. False lets it go at once, but for a sleep whose `done` is awaited.
    void setDelaying(bool isDelaying);

private:
    friend struct SleepWatchReplies;

    void takeLock();
    void sleepBegins();
    void sleepEnds();

    DesktopEvents& events_;
    BusConnection bus_;
    WillSleep willSleep_;
    bool isDelaying_ = false;
    bool isAsking_ = false;
    bool isFinishing_ = false;
    FileDescriptor lock_ = FileDescriptor(-1);
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

} // namespace varnic
