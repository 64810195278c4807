#pragma once

#include "BrevinKit/UpdatePhase.h"
#include "BrevinKit/Updater/PackageOwner.h"
#include "BrevinKit/Updater/UpdaterConfiguration.h"

#include <QObject>
#include <QSettings>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace brevin {

/// Looks for a newer release, fetches and checks it beside the running program, and has it take the program’s place
/// once that has ended. Main thread; the work that blocks is handed to the host’s threads.
class Updater : public QObject {
    Q_OBJECT

public:
    using Work = std::move_only_function<void()>;

    /// What the program around it does for it.
    struct Host {
        /// Runs work, which does not throw, on another thread.
        std::function<void(Work)> inBackground;
        /// Runs work on the main thread. Called on any thread.
        std::function<void(Work)> onMainThread;
        /// Opens the window that shows the phase, or brings it to the front.
        std::function<void()> openWindow = [] {};
        std::function<void(const std::string& url)> openURL = [](const std::string&) {};
        /// Asks the program to end as the user would.
        std::function<void()> terminate = [] {};
    };

    /// The settings must outlive it.
    Updater(UpdaterConfiguration configuration, QSettings& settings, Host host, QObject* parent = nullptr);
    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;
    ~Updater() override;

    /// Begins to check by itself, and installs what is ready when the program ends; does nothing without a feed.
    void start();

    /// One that the user starts opens the window and tells its outcome in any case; any other only what is new. While a
    /// download is going on none begins.
    void check(bool userInitiated);

    /// Fetches the release and makes it ready, or opens its page where it can’t be installed.
    void download(const UpdateFeed& feed);

    /// Ends the program, and starts it again once the staged release is in its place.
    void restartNow();

    /// The user stays: what `restartNow` asked for is not to come with a later end.
    void stay() { relaunchAfterInstall_ = false; }

    /// What the end of the program calls.
    void installOnQuit();

    [[nodiscard]] const Phase& phase() const { return phase_; }

    [[nodiscard]] bool automaticallyDownloads() const;
    void setAutomaticallyDownloads(bool downloads);

    /// The end of the last successful check.
    [[nodiscard]] std::optional<std::chrono::system_clock::time_point> lastChecked() const { return lastChecked_; }

    [[nodiscard]] const UpdaterConfiguration& configuration() const { return configuration_; }

    /// Whether there is a feed to check.
    [[nodiscard]] bool isOn() const { return configuration_.feedURL.has_value(); }

    /// Whether the running bundle can be replaced where it is.
    [[nodiscard]] bool canInstallInPlace() const;

    /// Known once a check has been made.
    [[nodiscard]] const std::optional<PackageOwner>& owner() const { return owner_; }

    /// The app that is ready to be installed.
    [[nodiscard]] const std::optional<std::filesystem::path>& stagedApp() const { return stagedApp_; }

Q_SIGNALS:
    void phaseChanged();
    void automaticallyDownloadsChanged();
    void lastCheckedChanged();

private:
    struct Finding;

    void setPhase(Phase phase);
    void openPage(const UpdateFeed& feed) const;
    void take(const Finding& finding, bool userInitiated);
    void announce(const UpdateFeed& feed, bool userInitiated);
    bool shouldAnnounce(const UpdateFeed& feed);
    void fetch(const UpdateFeed& feed, bool userInitiated);
    template <typename Task, typename Done>
    void inBackground(Task task, Done done);

    UpdaterConfiguration configuration_;
    QSettings& settings_;
    Host host_;
    Phase phase_;
    std::optional<std::chrono::system_clock::time_point> lastChecked_;
    std::optional<PackageOwner> owner_;
    std::optional<std::filesystem::path> stagedApp_;
    /// The release that the staged app is.
    std::optional<UpdateFeed> stagedFeed_;
    bool relaunchAfterInstall_ = false;
    /// Counts the checks: only the newest one’s outcome is taken.
    std::uint64_t checks_ = 0;
    QTimer firstCheck_;
    QTimer timer_;
    std::stop_source stop_;
    /// By it, work that comes back sees whether this is still there.
    std::shared_ptr<Updater*> self_;
};

} // namespace brevin
