#include "Varnic/Views/Update/UpdateModel.h"

#include "BrevinKit/Updater/Updater.h"
#include "Varnic/Views/Context/ViewContext.h"

#include <type_traits>
#include <utility>
#include <variant>

namespace varnic {

namespace {

using namespace brevin::UpdatePhase;

/// That which a phase is about, if it is about one.
std::optional<brevin::UpdateFeed> feedOf(const brevin::Phase& phase) {
    return std::visit(
        [](const auto& one) -> std::optional<brevin::UpdateFeed> {
            if constexpr (requires { one.feed; }) {
                return one.feed;
            } else {
                return std::nullopt;
            }
        },
        phase);
}

} // namespace

UpdateModel* UpdateModel::create(const QQmlEngine* engine, const QJSEngine* /*scripts*/) {
    return new UpdateModel(ViewContext::of(*engine).updater);
}

UpdateModel::UpdateModel(brevin::Updater* updater, QObject* parent) : QObject(parent), updater_(updater) {
    static_assert(std::variant_size_v<brevin::Phase> == failed + 1);
    static_assert(std::is_same_v<std::variant_alternative_t<ready, brevin::Phase>, Ready>);
    if (updater_ != nullptr) {
        connect(updater_, &brevin::Updater::phaseChanged, this, &UpdateModel::onPhaseChanged);
        connect(updater_, &brevin::Updater::automaticallyDownloadsChanged, this,
                &UpdateModel::automaticallyDownloadsChanged);
    }
}

bool UpdateModel::isOn() const {
    return updater_ != nullptr && updater_->isOn();
}

QString UpdateModel::version() const {
    return updater_ == nullptr ? QString() : QString::fromStdString(updater_->configuration().currentVersion);
}

QString UpdateModel::name() const {
    return QString::fromStdString(updater_->configuration().appName);
}

bool UpdateModel::automaticallyDownloads() const {
    return updater_ != nullptr && updater_->automaticallyDownloads();
}

void UpdateModel::setAutomaticallyDownloads(bool downloads) {
    if (updater_ != nullptr) {
        updater_->setAutomaticallyDownloads(downloads);
    }
}

UpdateModel::Phase UpdateModel::phase() const {
    return updater_ == nullptr ? idle : static_cast<Phase>(updater_->phase().index());
}

std::optional<brevin::UpdateFeed> UpdateModel::feed() const {
    return updater_ == nullptr ? std::nullopt : feedOf(updater_->phase());
}

QString UpdateModel::newVersion() const {
    return QString::fromStdString(feed()->version);
}

QString UpdateModel::status() const {
    switch (phase()) {
    case upToDate:
        return "You’re up to date.";
    case ready:
        return newVersion() + " installs when you quit.";
    case available:
        return newVersion() + " is available.";
    case failed:
        return detail();
    default:
        return title();
    }
}

QString UpdateModel::title() const {
    switch (phase()) {
    case idle:
        break;
    case checking:
        return "Checking for updates…";
    case upToDate:
        return "You’re up to date";
    case available:
        return QString("%1 %2 is available").arg(name(), newVersion());
    case downloading:
        return QString("Downloading %1 %2…").arg(name(), newVersion());
    case ready:
        return QString("%1 %2 is ready").arg(name(), newVersion());
    case failed:
        return "Update problem";
    }
    return {};
}

QString UpdateModel::detail() const {
    switch (phase()) {
    case upToDate:
        return QString("%1 %2 is the newest version.").arg(name(), version());
    case available:
        return QString("You have %1.").arg(version());
    case ready:
        return QString("It installs automatically the next time you quit %1.").arg(name());
    case failed:
        return QString::fromStdString(std::get<Failed>(updater_->phase()).message);
    default:
        return {};
    }
}

QString UpdateModel::notes() const {
    return phase() == available || phase() == ready ? QString::fromStdString(feed()->notes.value_or("")) : QString();
}

QString UpdateModel::hint() const {
    if (phase() != available || updater_->canInstallInPlace()) {
        return {};
    }
    if (const auto& owner = updater_->owner()) {
        return QString::fromStdString(owner->advice(updater_->configuration().appName));
    }
    return QString("Move %1 to a folder of your own to get updates automatically.").arg(name());
}

bool UpdateModel::canInstall() const {
    const auto release = feed();
    return release && release->download && updater_->configuration().publicKey && updater_->canInstallInPlace();
}

double UpdateModel::progress() const {
    const auto* const download = updater_ == nullptr ? nullptr : std::get_if<Downloading>(&updater_->phase());
    return download == nullptr ? 0 : download->progress;
}

void UpdateModel::checkNow() {
    if (updater_ != nullptr) {
        updater_->check(true);
    }
}

QString UpdateModel::action() const {
    switch (phase()) {
    case upToDate:
    case failed:
        return "OK";
    case available:
        return canInstall() ? "Download & Install" : "Open Download Page";
    case ready:
        return "Restart Now";
    default:
        return {};
    }
}

bool UpdateModel::canWait() const {
    return feed().has_value();
}

void UpdateModel::act() {
    switch (phase()) {
    case upToDate:
    case failed:
        Q_EMIT dismissed();
        break;
    case available:
        updater_->download(*feed());
        break;
    case ready:
        updater_->restartNow();
        break;
    default:
        break;
    }
}

void UpdateModel::onPhaseChanged() {
    Q_EMIT changed();
    if (phase() == idle) {
        Q_EMIT dismissed();
    }
}

} // namespace varnic
