#include "BrevinKit/Updater/Installation.h"

#include "BrevinKit/Bundle/BundleInfo.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStringList>

#include <array>
#include <string>
#include <system_error>

#include <sys/stat.h>

namespace brevin::Installation {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::string_view newSuffix = ".brevin-new";
constexpr std::string_view oldSuffix = ".brevin-old";

/// More than a swap takes: a minute’s wait and a copy of some hundred megabytes.
constexpr auto longestSwap = 15min;

QString text(const fs::path& path) {
    return QFile::decodeName(path.c_str());
}

fs::path beside(const fs::path& bundle, std::string_view suffix) {
    return fs::path(bundle).concat(suffix);
}

/// When the entry was made, renamed or otherwise changed.
std::chrono::system_clock::time_point changeOf(const fs::path& entry) {
    struct stat status{};
    return ::lstat(entry.c_str(), &status) == 0 ? std::chrono::system_clock::from_time_t(status.st_ctim.tv_sec)
                                                : std::chrono::system_clock::time_point::max();
}

} // namespace

// The copy is made beside the bundle and is on the disk before the two change places, which the new app's own
// brevin-exchange does in one step. cp keeps modes and attributes; those that mark what comes from the internet were
// cleared when the app was staged. A command a line, since the tests cut it off behind each.
const std::string_view script = R"sh(PID="$1"; SRC="$2"; DEST="$3"; RELAUNCH="$4"; PROGRAM="$5"
i=0; while kill -0 "$PID" 2>/dev/null && [ $i -lt 600 ]; do sleep 0.1; i=$((i+1)); done
NEW="$DEST.brevin-new"; OLD="$DEST.brevin-old"
rm -rf "$NEW"
[ ! -d "$DEST" ] || rm -rf "$OLD"
if cp -a "$SRC" "$NEW" &&
{ sync -f "$NEW" || sync; }; then
if "$SRC/Contents/libexec/brevin-exchange" "$NEW" "$DEST"; then
:
elif mv "$DEST" "$OLD" &&
mv "$NEW" "$DEST"; then
rm -rf "$OLD"
elif [ ! -d "$DEST" ]; then
mv "$OLD" "$DEST"
fi
fi
rm -rf "$NEW"
rm -rf "$(dirname "$SRC")"
[ "$RELAUNCH" = 1 ] && cd / && exec "$PROGRAM"
exit 0
)sh";

void launch(const Job& job) {
    QProcess shell;
    shell.setProgram("/bin/sh");
    shell.setArguments({"-c", QString::fromUtf8(script.data(), static_cast<qsizetype>(script.size())), "brevin-update",
                        QString::number(QCoreApplication::applicationPid()), text(job.staged), text(job.bundle),
                        job.relaunched.empty() ? "0" : "1", text(job.relaunched)});
    shell.setStandardInputFile(QProcess::nullDevice());
    shell.setStandardOutputFile(QProcess::nullDevice());
    shell.setStandardErrorFile(QProcess::nullDevice());
    shell.startDetached();
}

std::optional<fs::path> putBack(const fs::path& program) {
    std::error_code error;
    for (fs::path folder = program.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        const std::string& name = folder.native();
        if (!name.ends_with(oldSuffix) || !fs::is_regular_file(Bundle::infoFile(folder), error)) {
            continue;
        }
        const fs::path place = name.substr(0, name.size() - oldSuffix.size());
        if (fs::symlink_status(place, error).type() != fs::file_type::not_found) {
            return std::nullopt;
        }
        fs::rename(folder, place, error);
        return error ? std::nullopt : std::optional(place / program.lexically_relative(folder));
    }
    return std::nullopt;
}

void removeLeftovers(const fs::path& bundle, std::chrono::system_clock::time_point now) {
    for (const std::string_view suffix : {newSuffix, oldSuffix}) {
        const fs::path leftover = beside(bundle, suffix);
        std::error_code ignored;
        if (changeOf(leftover) < now - longestSwap) {
            fs::remove_all(leftover, ignored);
        }
    }
}

} // namespace brevin::Installation
