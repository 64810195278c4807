#include "BrevinKit/Updater/UpdaterConfiguration.h"

#include "BrevinKit/Bundle/BundleInfo.h"

#include <QVersionNumber>

#include <gnu/libc-version.h>

namespace brevin {

namespace {

SystemVersion systemVersion() {
    const QVersionNumber version = QVersionNumber::fromString(gnu_get_libc_version());
    return {.major = version.majorVersion(), .minor = version.minorVersion(), .patch = version.microVersion()};
}

} // namespace

UpdaterConfiguration UpdaterConfiguration::of(const std::filesystem::path& program,
                                              const std::filesystem::path& describedElsewhere,
                                              const std::filesystem::path& caches) {
    const auto bundle = Bundle::around(program);
    const BundleInfo info =
        BundleInfo::read(bundle ? Bundle::infoFile(*bundle) : describedElsewhere).value_or(BundleInfo());
    return {.appName = info.name,
            .identifier = info.identifier,
            .currentVersion = info.version,
            .feedURL = info.feedURL,
            .publicKey = info.publicKey,
            .program = program,
            .bundle = bundle,
            .caches = caches,
            .system = systemVersion()};
}

} // namespace brevin
