#include "VarnicPlatform/Capture/LiveCapture.h"

#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Audio/DriftCompensator.h"
#include "VarnicPlatform/Capture/CaptureSupervisor.h"

#include <fmt/ranges.h>

#include <algorithm>
#include <condition_variable>
#include <optional>
#include <string>
#include <thread>

namespace varnic {

namespace {

/// Some seconds of 32-bit floats at 48,000 Hz.
constexpr std::uint32_t bytesPerChannel = 1U << 20U;
constexpr std::chrono::milliseconds drainInterval{20};

/// One side on its way from its ring to the consumer.
struct Side {
    Speaker speaker;
    FrameRing ring;
    DriftCompensator compensator{};

    [[nodiscard]] bool hasCome() const { return ring.lastPush() > 0; }

    /// Hands the oldest block out; false where there is none.
    bool drainOne(double hostStart, const CaptureSource::Deliver& deliver) {
        double stamp = 0;
        PcmBuffer block;
        if (!ring.pop(stamp, block)) {
            return false;
        }
        if (auto piece = compensator.compensate(stamp - hostStart, block)) {
            deliver(speaker, std::move(piece->sound), piece->at);
        }
        return true;
    }
};

/// One error for all that kept both sides from starting. The microphone's own sentence, where there is one, comes first
/// and begins as this error does; that beginning is said once.
CaptureError nothingStarted(const std::vector<std::string>& problems) {
    const std::string beginning = CaptureError::micFailed("").what();
    const std::string all = fmt::format("{}", fmt::join(problems, " "));
    return CaptureError::micFailed(all.starts_with(beginning) ? all.substr(beginning.size()) : all);
}

} // namespace

/// What lives from start to stop.
class LiveCapture::Session {
public:
    Session(double hostStart, const CaptureDevices& devices)
        : hostStart_(hostStart), supervisor_(you_.ring, them_.ring) {
        choose(devices);
    }

    void choose(const CaptureDevices& devices) { supervisor_.choose(devices); }

    /// The sides that started, which are kept open from here on; what went wrong with others is among the problems.
    std::vector<Speaker> open(bool withMic, bool withSystem) {
        if (!supervisor_.connect()) {
            supervisor_.addProblem("The sound system, PipeWire, isn’t running.");
            return {};
        }
        // The programs first: they are heard at once, while a microphone may take seconds.
        const Problem theirs = withSystem ? attempt(&CaptureSupervisor::openPrograms) : std::nullopt;
        const Problem yours = withMic ? attempt(&CaptureSupervisor::openMicrophone) : std::nullopt;
        for (const Problem& problem : {yours, theirs}) {
            if (problem) {
                supervisor_.addProblem(*problem);
            }
        }
        if (withMic && !yours) {
            sides_.push_back(Speaker::you);
        }
        if (withSystem && !theirs) {
            sides_.push_back(Speaker::them);
        }
        awaitsMicrophone_ = withMic && yours;
        supervisor_.watch();
        return sides_;
    }

    /// Begins to deliver what comes into the rings.
    void run(Deliver deliver) {
        drainer_ = std::jthread([this, deliver = std::move(deliver)](const std::stop_token& stop) {
            std::mutex lock;
            std::unique_lock held(lock);
            std::condition_variable_any never;
            while (!stop.stop_requested()) {
                never.wait_for(held, stop, drainInterval, [] { return false; });
                drain(deliver);
            }
        });
    }

    /// Ends delivery, with what is in the rings handed out.
    void close() {
        supervisor_.close();
        isClosed_ = true;
        if (drainer_.joinable()) {
            drainer_.request_stop();
            drainer_.join();
        }
    }

    [[nodiscard]] std::vector<std::string> problems() const { return supervisor_.problems(); }

    [[nodiscard]] std::optional<std::string> notice() const { return supervisor_.notice(); }

    [[nodiscard]] std::vector<Speaker> awaited() const {
        return awaitsMicrophone_ ? std::vector{Speaker::you} : std::vector<Speaker>();
    }

    [[nodiscard]] bool expects(Speaker speaker) const {
        if (isClosed_) {
            return false;
        }
        return speaker == Speaker::you ? hasStarted(Speaker::you) || you_.hasCome()
                                       : hasStarted(Speaker::them) && supervisor_.expectsPrograms();
    }

    [[nodiscard]] std::uint64_t lostFrames() const { return you_.ring.lostFrames() + them_.ring.lostFrames(); }

private:
    [[nodiscard]] bool hasStarted(Speaker speaker) const { return std::ranges::find(sides_, speaker) != sides_.end(); }

    /// Why a side does not start.
    using Problem = std::optional<std::string>;

    Problem attempt(void (CaptureSupervisor::*openSide)()) {
        try {
            (supervisor_.*openSide)();
            return std::nullopt;
        } catch (const CaptureError& error) {
            return error.what();
        }
    }

    /// In turn: after a standstill neither side gets ahead of what waits of the other.
    void drain(const Deliver& deliver) {
        for (bool isAny = true; isAny;) {
            const bool ofYou = you_.drainOne(hostStart_, deliver);
            const bool ofThem = them_.drainOne(hostStart_, deliver);
            isAny = ofYou || ofThem;
        }
    }

    double hostStart_;
    std::vector<Speaker> sides_;
    bool awaitsMicrophone_ = false;
    Side you_{.speaker = Speaker::you, .ring = FrameRing(1, bytesPerChannel)};
    Side them_{.speaker = Speaker::them, .ring = FrameRing(2, 2 * bytesPerChannel)};
    CaptureSupervisor supervisor_;
    std::atomic<bool> isClosed_ = false;
    std::jthread drainer_;
};

LiveCapture::LiveCapture(CaptureDevices devices) : devices_(std::move(devices)) {}

LiveCapture::~LiveCapture() {
    LiveCapture::stop();
}

std::vector<Speaker> LiveCapture::start(double hostStart, WantedSides wanted, Deliver deliver) {
    stop();
    ++starts;
    if (!wanted.you && !wanted.them) {
        throw CaptureError::nothingToRecord();
    }
    const auto session = std::make_shared<Session>(hostStart, chosen());
    session->run(std::move(deliver));
    const std::vector<Speaker> sides = session->open(wanted.you, wanted.them);
    {
        const std::scoped_lock lock(lock_);
        session_ = session;
        session->choose(devices_); // which may have been changed meanwhile
    }
    if (sides.empty()) {
        session->close();
        throw nothingStarted(session->problems());
    }
    return sides;
}

void LiveCapture::choose(const CaptureDevices& devices) {
    const std::scoped_lock lock(lock_);
    devices_ = devices;
    if (session_) {
        session_->choose(devices);
    }
}

void LiveCapture::stop() {
    if (const auto session = current()) {
        session->close();
    }
}

std::vector<std::string> LiveCapture::problems() const {
    const auto session = current();
    return session ? session->problems() : std::vector<std::string>();
}

std::vector<Speaker> LiveCapture::awaited() const {
    const auto session = current();
    return session ? session->awaited() : std::vector<Speaker>();
}

std::optional<std::string> LiveCapture::notice() const {
    const auto session = current();
    return session ? session->notice() : std::nullopt;
}

bool LiveCapture::expects(Speaker speaker) const {
    const auto session = current();
    return session && session->expects(speaker);
}

std::uint64_t LiveCapture::lostFrames() const {
    const auto session = current();
    return session ? session->lostFrames() : 0;
}

CaptureDevices LiveCapture::chosen() const {
    const std::scoped_lock lock(lock_);
    return devices_;
}

std::shared_ptr<LiveCapture::Session> LiveCapture::current() const {
    const std::scoped_lock lock(lock_);
    return session_;
}

} // namespace varnic
