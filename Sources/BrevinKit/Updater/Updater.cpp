#include "BrevinKit/Updater/Updater.h"

#include "BrevinKit/UpdateError.h"
#include "BrevinKit/UpdateLogic.h"
#include "BrevinKit/Updater/Fetch.h"
#include "BrevinKit/Updater/Installation.h"
#include "BrevinKit/Updater/Staging.h"
#include "HTTP/Error.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <exception>
#include <expected>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include <unistd.h>

namespace brevin {

namespace {

namespace fs = std::filesystem;

constexpr const char* automaticKey = "BrevinAutoUpdate";

/// A disk image or a stick: what is mounted for a while.
bool isOnTransientDisk(const fs::path& bundle) {
    constexpr std::array<std::string_view, 3> places{"/media/", "/run/media/", "/tmp/.mount_"};
    return std::ranges::any_of(places,
                               [&bundle](std::string_view place) { return bundle.native().starts_with(place); });
}

/// The feed as it is, if what it says can be shown, stored and opened.
UpdateFeed checked(UpdateFeed feed) {
    if (!UpdateLogic::isVersion(feed.version)) {
        throw UpdateError(UpdateMessages::feedUnavailable);
    }
    return feed;
}

/// The sentence for what ended a download.
std::string sentenceFor(const std::exception_ptr& problem) {
    try {
        std::rethrow_exception(problem);
    } catch (const UpdateError& error) {
        return error.message();
    } catch (const std::exception& error) {
        return UpdateMessages::other(error.what());
    }
}

} // namespace

/// What a check brings.
struct Updater::Finding {
    std::optional<UpdateFeed> feed;
    std::optional<PackageOwner> owner;
};

Updater::Updater(UpdaterConfiguration configuration, QSettings& settings, Host host, QObject* parent)
    : QObject(parent), configuration_(std::move(configuration)), settings_(settings), host_(std::move(host)),
      self_(std::make_shared<Updater*>(this)) {
    firstCheck_.setSingleShot(true);
    for (QTimer* timer : {&firstCheck_, &timer_}) {
        connect(timer, &QTimer::timeout, this, [this] { check(false); });
    }
}

Updater::~Updater() {
    stop_.request_stop();
}

/// Runs the task on another thread and gives its outcome, an expected value, to `done` on this one.
template <typename Task, typename Done>
void Updater::inBackground(Task task, Done done) {
    using Outcome = std::expected<std::invoke_result_t<Task&>, std::exception_ptr>;
    host_.inBackground([task = std::move(task), done = std::move(done), self = std::weak_ptr(self_),
                        post = host_.onMainThread]() mutable {
        Outcome outcome = [&]() -> Outcome {
            try {
                return task();
            } catch (...) {
                return std::unexpected(std::current_exception());
            }
        }();
        post([outcome = std::move(outcome), done = std::move(done), self = std::move(self)]() mutable {
            if (!self.expired()) {
                done(std::move(outcome));
            }
        });
    });
}

void Updater::start() {
    if (!isOn()) {
        return;
    }
    if (configuration_.bundle) {
        Installation::removeLeftovers(*configuration_.bundle, std::chrono::system_clock::now());
    }
    connect(qApp, &QCoreApplication::aboutToQuit, this, &Updater::installOnQuit);
    firstCheck_.start(configuration_.firstCheckAfter);
    timer_.start(configuration_.checkInterval);
}

void Updater::check(bool userInitiated) {
    const bool isDownloading = std::holds_alternative<UpdatePhase::Downloading>(phase_);
    const bool isForUser =
        std::holds_alternative<UpdatePhase::Ready>(phase_) || std::holds_alternative<UpdatePhase::Checking>(phase_);
    if (isDownloading && userInitiated) {
        host_.openWindow();
    }
    if (!isOn() || isDownloading || (isForUser && !userInitiated)) {
        return;
    }
    if (userInitiated) {
        setPhase(UpdatePhase::Checking());
        host_.openWindow();
    }
    const auto look = [url = *configuration_.feedURL, program = configuration_.program, stop = stop_.get_token()] {
        return Finding{.feed = checked(Fetch::feed(url, stop)), .owner = PackageOwner::of(program)};
    };
    inBackground(look, [this, userInitiated, number = ++checks_](std::expected<Finding, std::exception_ptr> outcome) {
        if (number == checks_) {
            take(outcome.value_or(Finding()), userInitiated);
        }
    });
}

void Updater::take(const Finding& finding, bool userInitiated) {
    if (std::holds_alternative<UpdatePhase::Downloading>(phase_)) {
        return; // Which a button began meanwhile.
    }
    if (!finding.feed) {
        setPhase(userInitiated ? Phase(UpdatePhase::Failed{std::string(UpdateMessages::feedUnavailable)})
                               : Phase(UpdatePhase::Idle()));
        return;
    }
    const UpdateFeed& feed = *finding.feed;
    owner_ = finding.owner;
    lastChecked_ = std::chrono::system_clock::now();
    Q_EMIT lastCheckedChanged();
    if (!UpdateLogic::isNewer(feed.version, configuration_.currentVersion) ||
        !UpdateLogic::systemSupports(feed.minimumSystemVersion, configuration_.system)) {
        setPhase(userInitiated ? Phase(UpdatePhase::UpToDate()) : Phase(UpdatePhase::Idle()));
    } else if (stagedApp_ && stagedFeed_->version == feed.version) {
        setPhase(UpdatePhase::Ready{*stagedFeed_});
    } else if (automaticallyDownloads() && feed.download && configuration_.publicKey && canInstallInPlace()) {
        fetch(feed, userInitiated);
    } else {
        setPhase(UpdatePhase::Available{feed});
        announce(feed, userInitiated);
    }
}

void Updater::download(const UpdateFeed& feed) {
    if (std::holds_alternative<UpdatePhase::Downloading>(phase_)) {
        return;
    }
    if (!feed.download || !configuration_.publicKey || !canInstallInPlace()) {
        openPage(feed);
        return;
    }
    fetch(feed, true);
}

void Updater::fetch(const UpdateFeed& feed, bool userInitiated) {
    stagedApp_.reset();
    stagedFeed_.reset();
    setPhase(UpdatePhase::Downloading{.feed = feed});
    const Staging::Expected expected{
        .identifier = configuration_.identifier, .version = feed.version, .publicKey = *configuration_.publicKey};
    const auto publish = [self = std::weak_ptr(self_), post = host_.onMainThread, feed](double progress) {
        post([self, feed, progress] {
            if (const auto updater = self.lock()) {
                (*updater)->setPhase(UpdatePhase::Downloading{.feed = feed, .progress = progress});
            }
        });
    };
    const auto work = [download = *feed.download, expected, publish, stop = stop_.get_token(),
                       folder = Staging::folder(configuration_.caches, configuration_.identifier)] {
        Staging::prepare(folder);
        try {
            const fs::path zip = folder / "update.zip";
            Fetch::archive(download, zip, publish, stop);
            const fs::path app = Staging::unpack(zip, download.edSignature, expected.publicKey);
            Staging::validate(app, expected);
            return app;
        } catch (...) {
            // Nobody could use what is there, least of all on a full disk.
            std::error_code ignored;
            fs::remove_all(folder, ignored);
            throw;
        }
    };
    inBackground(work, [this, feed, userInitiated](std::expected<fs::path, std::exception_ptr> outcome) {
        if (!outcome) {
            setPhase(UpdatePhase::Failed{sentenceFor(outcome.error())});
            return;
        }
        stagedApp_ = std::move(*outcome);
        stagedFeed_ = feed;
        setPhase(UpdatePhase::Ready{feed});
        announce(feed, userInitiated);
    });
}

/// Where the user asked for it, the window is open, or was closed on purpose.
void Updater::announce(const UpdateFeed& feed, bool userInitiated) {
    if (!userInitiated && shouldAnnounce(feed)) {
        host_.openWindow();
    }
}

/// Whether the version has never opened the window by itself; from now on it has.
bool Updater::shouldAnnounce(const UpdateFeed& feed) {
    const QString key = "BrevinAnnounced-" + QString::fromStdString(feed.version);
    if (settings_.value(key).toBool()) {
        return false;
    }
    settings_.setValue(key, true);
    return true;
}

void Updater::openPage(const UpdateFeed& feed) const {
    // The feed isn’t signed, and other schemes may start programs.
    if (feed.url.starts_with("https://") || feed.url.starts_with("http://")) {
        host_.openURL(feed.url);
    }
}

void Updater::restartNow() {
    relaunchAfterInstall_ = true;
    host_.terminate();
}

void Updater::installOnQuit() {
    stop_.request_stop();
    if (!stagedApp_ || !configuration_.bundle) {
        return;
    }
    try {
        // It may have lain in a folder that others clean up for days.
        Staging::validate(*stagedApp_, {.identifier = configuration_.identifier,
                                        .version = stagedFeed_->version,
                                        .publicKey = configuration_.publicKey.value_or("")});
        Installation::launch({.staged = *stagedApp_,
                              .bundle = *configuration_.bundle,
                              .relaunched = relaunchAfterInstall_ ? configuration_.program : fs::path()});
    } catch (const std::exception&) {
        return; // The program that is there stays; the next start fetches anew.
    }
    stagedApp_.reset();
}

bool Updater::automaticallyDownloads() const {
    return settings_.value(automaticKey, true).toBool();
}

void Updater::setAutomaticallyDownloads(bool downloads) {
    settings_.setValue(automaticKey, downloads);
    Q_EMIT automaticallyDownloadsChanged();
}

bool Updater::canInstallInPlace() const {
    const auto& bundle = configuration_.bundle;
    return bundle && !owner_ && !isOnTransientDisk(*bundle) && ::access(bundle->parent_path().c_str(), W_OK) == 0 &&
           ::access(bundle->c_str(), W_OK) == 0;
}

void Updater::setPhase(Phase phase) {
    phase_ = std::move(phase);
    Q_EMIT phaseChanged();
}

} // namespace brevin
