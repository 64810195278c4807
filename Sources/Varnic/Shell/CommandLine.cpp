#include "Varnic/Shell/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <fmt/format.h>

#include <array>

namespace varnic {

namespace {

/// A path or a file's URL, as file managers give them.
std::filesystem::path absolutePath(const QString& word) {
    const QUrl url = QUrl::fromUserInput(word, QDir::currentPath(), QUrl::AssumeLocalFile);
    const QString path = url.isLocalFile() ? url.toLocalFile() : word;
    return QFileInfo(path).absoluteFilePath().toStdString();
}

/// What a launcher left for the program that it started.
std::string launchToken() {
    for (const char* name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        if (const QByteArray token = qgetenv(name); !token.isEmpty()) {
            return token.toStdString();
        }
    }
    return {};
}

/// The parser takes the program's name from the application, and one of its own where there is none yet.
std::string helpText(const QCommandLineParser& parser) {
    std::string name = "varnic";
    std::array words{name.data()};
    int count = words.size();
    std::optional<QCoreApplication> application;
    if (QCoreApplication::instance() == nullptr) {
        application.emplace(count, words.data());
    }
    return parser.helpText().toStdString();
}

} // namespace

CommandLine CommandLine::parse(const QStringList& words) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Records calls on this computer and turns them into notes.");
    const QCommandLineOption toggle("toggle-recording",
                                    "Start or stop a recording, in the program that runs if one does.");
    const QCommandLineOption help({"h", "help"}, "Show this help.");
    const QCommandLineOption version({"v", "version"}, "Show the version.");
    const QCommandLineOption background("background", "Start without a window, with an icon in the tray.");
    parser.addOptions({toggle, background, help, version});
    parser.addPositionalArgument("file", "Recordings to write down as notes.", "[file…]");

    constexpr int usageError = 2;
    if (!parser.parse(words)) {
        return {.request = {},
                .answer = "varnic: " + parser.errorText().toStdString() + "; see varnic --help\n",
                .exitCode = usageError};
    }
    if (parser.isSet(help)) {
        return {.request = {}, .answer = helpText(parser)};
    }
    if (parser.isSet(version)) {
        return {.request = {}, .answer = "varnic " VARNIC_VERSION "\n"};
    }
    const QStringList names = parser.positionalArguments();
    const auto refused = [](const char* reason) {
        return CommandLine{
            .request = {}, .answer = fmt::format("varnic: {}; see varnic --help\n", reason), .exitCode = usageError};
    };
    if (parser.isSet(toggle) && !names.isEmpty()) {
        return refused("--toggle-recording takes no files");
    }
    if (parser.isSet(background) && (parser.isSet(toggle) || !names.isEmpty())) {
        return refused("--background goes with nothing else");
    }
    Request request{.activationToken = launchToken()};
    if (parser.isSet(toggle)) {
        request.kind = Request::Kind::toggleRecording;
    } else if (parser.isSet(background)) {
        request.kind = Request::Kind::background;
    } else if (!names.isEmpty()) {
        request.kind = Request::Kind::importFiles;
        for (const QString& name : names) {
            request.files.push_back(absolutePath(name));
        }
    }
    return {.request = std::move(request), .answer = std::nullopt};
}

} // namespace varnic
