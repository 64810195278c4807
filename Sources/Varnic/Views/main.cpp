#include "BrevinKit/Updater/Installation.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/Background.h"
#include "Varnic/DemoData/DemoData.h"
#include "Varnic/SelfTest/SelfTest.h"
#include "Varnic/Shell/CommandLine.h"
#include "Varnic/Shell/SingleInstance.h"
#include "Varnic/Snapshot/Snapshotter.h"
#include "Varnic/Views/Program/Program.h"
#include "Varnic/Views/Theme/Native/AccessibleControl.h"
#include "Varnic/Views/Theme/Native/Fonts.h"
#include "VarnicPlatform/Speech/ModelCheck.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

namespace {

using varnic::CommandLine;
using varnic::SingleInstance;

/// The exit code of a start that only prints, which takes no screen. There must be only one application in the life of
/// the program: with the end of a first one, Qt forgets how windows are exposed to screen readers.
std::optional<int> answer(int argc, char** argv) {
    QStringList words;
    std::ranges::transform(std::span(argv, static_cast<std::size_t>(argc)), std::back_inserter(words),
                           [](const char* word) { return QFile::decodeName(word); });
    const CommandLine line = CommandLine::parse(words);
    if (!line.answer) {
        return std::nullopt;
    }
    std::fputs(line.answer->c_str(), line.exitCode == 0 ? stdout : stderr);
    return line.exitCode;
}

/// Where an update was cut off so that only the old program is left, beside its place: moves it there and runs it anew.
void goBackToPlace(char** argv) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (const auto place = brevin::Installation::putBack(program)) {
        ::execv(place->c_str(), argv);
    }
}

int refuse(const std::string& problem) {
    std::fprintf(stderr, "varnic: %s\n", problem.c_str());
    QMessageBox::critical(nullptr, "Varnic", QString::fromStdString(problem));
    return 1;
}

std::filesystem::path pathOf(const QTemporaryDir& folder) {
    return folder.path().toStdString();
}

/// Where a demonstration keeps what a program writes, gone at its end; null where there is to be none. Throws
/// std::runtime_error where it can't be made.
std::unique_ptr<QTemporaryDir> demoFolder() {
    if (!varnic::DemoData::isAskedFor() && !varnic::Snapshotter::isAskedFor()) {
        return nullptr;
    }
    auto folder = std::make_unique<QTemporaryDir>();
    if (!folder->isValid()) {
        throw std::runtime_error(folder->errorString().toStdString());
    }
    return folder;
}

int run(int argc, char** argv) {
    QApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName("Varnic");
    QGuiApplication::setDesktopFileName("app.brevin.Varnic");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const CommandLine line = CommandLine::parse(QCoreApplication::arguments());

    const std::unique_ptr<QTemporaryDir> demo = demoFolder();
    std::pair<std::filesystem::path, bool> place;
    try {
        place = demo ? std::pair(varnic::AppPlaces::forDemo(pathOf(*demo)).dataDirectory, true)
                     : varnic::AppPlaces::dataDirectoryFromEnvironment();
    } catch (const std::exception& error) {
        return refuse(error.what());
    }
    const auto& [library, isScratch] = place;
    SingleInstance instance(library, SingleInstance::busNameFor(library, isScratch));
    switch (instance.claim(line.request)) {
    case SingleInstance::Outcome::handedOver:
        return 0;
    case SingleInstance::Outcome::refused:
        return refuse(instance.problem());
    case SingleInstance::Outcome::first:
        break;
    }
    varnic::prepareAccessibility();
    varnic::prepareFonts();
    // Listing the installed fonts takes long; it goes on beside the rest up to the first text, which waits for it.
    const std::jthread fonts([] { QFontDatabase::families(); });
    const auto flows = qScopeGuard([] { varnic::Background::finish(); });
    varnic::Program program(demo ? varnic::AppPlaces::forDemo(pathOf(*demo)) : varnic::AppPlaces::fromEnvironment());
    QObject::connect(&program.model(), &varnic::AppModel::libraryMoved, &instance,
                     [&instance](const std::filesystem::path& folder) { instance.follow(folder); });
    instance.setHandler([&program](const varnic::Request& request) { program.perform(request); });
    program.start(line.request);
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    if (const auto code = varnic::ModelCheck::enable(argc, argv)) {
        return *code;
    }
    goBackToPlace(argv);
    if (const auto code = answer(argc, argv)) {
        return *code;
    }
    if (const auto refusal = varnic::SelfTest::isAskedFor() ? varnic::SelfTest::refusal() : std::nullopt) {
        std::puts(refusal->c_str());
        return 0; // the line is the verdict
    }
    if (varnic::Snapshotter::isAskedFor()) {
        varnic::Snapshotter::prepare();
    }
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "varnic: %s\n", error.what());
        return 1;
    }
}
