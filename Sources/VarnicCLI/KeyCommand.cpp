#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "VarnicCLI/Command.h"
#include "VarnicCLI/Providers.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/AISummariser/KeyStore.h"
#include "VarnicCore/AISummariser/KeyText.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicPlatform/KeyStore/CoreDumps.h"
#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include <unistd.h>

namespace varnic::cli {

namespace {

/// Standard input up to its end, or up to the end of the line at a terminal; no more than makes it too long for a key.
std::string readInput(bool isTerminal) {
    std::string text;
    char byte = 0;
    while (text.size() <= KeyText::longest && (!isTerminal || Terminal::SilentInput::wait()) &&
           ::read(STDIN_FILENO, &byte, 1) == 1 && (!isTerminal || byte != '\n')) {
        text += byte;
    }
    return text;
}

std::string readKey(AIProviderKind provider) {
    forbidCoreDumps();
    if (::isatty(STDIN_FILENO) != 1) {
        return KeyText::checked(readInput(false));
    }
    const Terminal::SilentInput silent;
    Terminal::print(stderr, "API key for {} (it isn’t shown): ", title(provider));
    const std::string input = readInput(true);
    Terminal::print(stderr, "\n");
    if (Terminal::SilentInput::wasInterrupted()) {
        throw std::runtime_error("Stopped. Nothing was changed.");
    }
    return KeyText::checked(input);
}

void change(AIProviderKind provider, bool isRemoval) {
    const std::string account(rawValue(provider));
    try {
        if (!isRemoval) {
            KeychainStore().setKey(readKey(provider), account);
        } else if (!KeychainStore().remove(account)) {
            Terminal::print(stderr, "There is no key for {}, so nothing was removed.\n", title(provider));
        }
    } catch (const KeyStoreError& error) {
        throw std::runtime_error(Wording::shown(error.what()));
    }
}

} // namespace

ExitCode key(const Arguments& arguments) {
    const auto& words = arguments.words();
    if (words.size() != 2 || (words[0] != "set" && words[0] != "remove")) {
        throw UsageError("say set or remove, and the provider");
    }
    const AIProviderKind provider = providerNamed(words[1]);
    if (AppPlaces::isScratchByEnvironment()) {
        throw std::runtime_error("With VARNIC_DATA_DIR set no key ring is touched, so nothing was changed.");
    }
    change(provider, words[0] == "remove");
    return ExitCode::success;
}

} // namespace varnic::cli
