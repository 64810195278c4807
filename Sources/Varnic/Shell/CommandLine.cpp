#include "Varnic/Shell/CommandLine.h"

#include "Varnic/ManualPage.h"
#include "VarnicCore/Models/NoteAddress.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

namespace varnic {

namespace {

constexpr const char* about = "Records calls on this computer and turns them into notes.";
constexpr const char* fileWords =
    "Recordings to write down as notes, Markdown files to make notes of, or the address of a "
    "note.";

/// What one option asks for.
struct Demand {
    const char* option;
    /// Fits into a line of the help, by which shells complete.
    const char* what;
    Request::Kind kind;
};

constexpr std::array demands{
    Demand{"library", "Show all notes.", Request::Kind::openLibrary},
    Demand{"new-note", "Begin a new note.", Request::Kind::newNote},
    Demand{"record", "Record a call, or show the one that is recorded.", Request::Kind::recordCall},
    Demand{"toggle-recording", "Start or stop a recording.", Request::Kind::toggleRecording},
    Demand{"background", "Start without a window, with an icon in the tray.", Request::Kind::background}};

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

/// As the help has them: "-h, --help".
std::string label(const QCommandLineOption& option) {
    QStringList names;
    for (const QString& name : option.names()) {
        names << (name.size() == 1 ? "-" : "--") + name;
    }
    return names.join(", ").toStdString();
}

std::string manualPage(const std::vector<QCommandLineOption>& options) {
    ManualPage page("varnic", "record calls and keep notes");
    page.synopsis("[option]");
    page.synopsis("[file…]");
    page.synopsis("varnic:ID[?t=SECONDS]");
    page.section("DESCRIPTION");
    page.paragraph(fmt::format("{} Where the program runs already, that one does what is asked.", about));
    page.term("file…", "Recordings and videos are written down as notes, and Markdown files become notes.");
    page.term(
        "varnic:ID[?t=SECONDS]",
        "The address of a note, as “Copy Link” in its menu gives it: shows the note, and its call at that second.");
    page.section("OPTIONS");
    for (const QCommandLineOption& option : options) {
        if ((option.flags() & QCommandLineOption::HiddenFromHelp) == 0) {
            page.term(label(option), option.description().toStdString());
        }
    }
    page.section("ENVIRONMENT");
    page.term("VARNIC_DATA_DIR", "The library’s folder, instead of the usual one. The key ring isn’t touched then.");
    page.term("VARNIC_DEMO", "If set, an invented library is shown, and nothing is written.");
    page.section("FILES");
    page.term("~/.local/share/Varnic/Library", "The notes and their recordings, unless the library was moved.");
    page.term("~/.config/Varnic/settings.ini", "The settings.");
    page.section("SEE ALSO");
    page.paragraph("varnic-cli(1)");
    return page.text();
}

} // namespace

CommandLine CommandLine::parse(const QStringList& words) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QString(about));
    std::vector<QCommandLineOption> options;
    for (const Demand& demand : demands) {
        options.emplace_back(demand.option, demand.what);
    }
    const QCommandLineOption help({"h", "help"}, "Show this help.");
    const QCommandLineOption version({"v", "version"}, "Show the version.");
    QCommandLineOption manual("manual");
    manual.setFlags(QCommandLineOption::HiddenFromHelp);
    options.insert(options.end(), {help, version, manual});
    for (const QCommandLineOption& option : options) {
        parser.addOption(option);
    }
    parser.addPositionalArgument("file", QString(fileWords), "[file…]");

    constexpr int usageError = 2;
    const auto refused = [](const QString& reason) {
        return CommandLine{.request = {},
                           .answer = fmt::format("varnic: {}; see varnic --help\n", reason.toStdString()),
                           .exitCode = usageError};
    };
    if (!parser.parse(words)) {
        QString reason = parser.errorText();
        reason.remove(QRegularExpression("\\.$"));
        return refused(reason);
    }
    if (parser.isSet(help)) {
        return {.request = {}, .answer = helpText(parser)};
    }
    if (parser.isSet(version)) {
        return {.request = {}, .answer = "varnic " VARNIC_VERSION "\n"};
    }
    if (parser.isSet(manual)) {
        return {.request = {}, .answer = manualPage(options)};
    }
    const QStringList names = parser.positionalArguments();
    Request request{.activationToken = launchToken()};
    for (const Demand& demand : demands) {
        if (!parser.isSet(demand.option)) {
            continue;
        }
        if (parser.optionNames().size() > 1) {
            return refused(QString("--%1 goes with nothing else").arg(demand.option));
        }
        if (!names.isEmpty()) {
            return refused(QString("--%1 takes no files").arg(demand.option));
        }
        request.kind = demand.kind;
    }
    if (std::ranges::any_of(names, [](const QString& name) { return NoteAddress::isMeant(name.toStdString()); })) {
        if (names.size() > 1) {
            return refused("an address goes with nothing else");
        }
        request.kind = Request::Kind::openAddress;
        request.address = names.front().toStdString();
    } else if (!names.isEmpty()) {
        request.kind = Request::Kind::importFiles;
        for (const QString& name : names) {
            request.files.push_back(absolutePath(name));
        }
    }
    return {.request = std::move(request), .answer = std::nullopt};
}

} // namespace varnic
