#include "Varnic/SelfTest/Checks.h"
#include "Varnic/SelfTest/StandIns.h"
#include "Varnic/SelfTest/UserJourney.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/Export/Exporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator(in), {}};
}

} // namespace

void UserJourney::shareEmail() {
    model_.copyEmail(call_);
    checks_.check(standIns_.pasteboard().contains("Subject: Follow-up"), "the follow-up email copies with its subject");
    model_.openInMail(call_);
    const auto& opened = standIns_.opened();
    checks_.check(opened.size() == 1 && opened.back().starts_with("mailto:") &&
                      opened.back().contains("subject=Follow-up"),
                  "Open in Mail makes a draft (not sent)");
}

QCoro::Task<> UserJourney::summariseByAI() {
    co_await tryKeys();
    co_await replaceSummary();
}

QCoro::Task<> UserJourney::tryKeys() {
    AISettings ai = model_.settings.ai.value();
    checks_.check(!ai.enabled, "AI summaries are off by default");
    ai.enabled = true;
    ai.provider = AIProviderKind::anthropic;
    model_.settings.ai = ai;
    co_await model_.runAI(call_);
    checks_.check(standIns_.ai().calls() == 0 && aiErrorText() == AIError::noKey().what(),
                  "without a key nothing is sent and it says why", aiErrorText());
    const auto digestNow = [this] {
        const CallRecord* call = callOf(call_);
        return call == nullptr ? std::nullopt : call->digest;
    };
    const std::optional<CallDigest> before = digestNow();
    std::string key = "sk-ant-selftest";
    co_await model_.setKey(std::move(key));
    standIns_.ai().status = 401;
    co_await model_.runAI(call_);
    checks_.check(aiErrorText() == AIError::badKey().what() && before && digestNow() == before,
                  "a rejected key keeps the local summary", aiErrorText());
}

QCoro::Task<> UserJourney::replaceSummary() {
    const Note* note = firstCall();
    const std::vector<Block> todos = note == nullptr ? std::vector<Block>() : note->todos();
    std::string ticked;
    if (!todos.empty()) {
        ticked = todos.front().text;
        model_.toggleTodo(call_, todos.front().id);
    }
    standIns_.ai().status = 200;
    co_await model_.runAI(call_);
    const auto providerIs = [this](bool isLocal, std::optional<std::string_view> name) {
        const CallRecord* call = callOf(call_);
        return call != nullptr && call->digest && call->digest->isLocal == isLocal &&
               (!name || call->digest->provider == *name);
    };
    checks_.check(providerIs(false, "Claude Haiku 5.5"), "Summarise with Claude replaces the summary", aiErrorText());
    checks_.check(firstCall() != nullptr && firstCall()->title == "Launch plan & pricing", "…and the auto title");
    const std::vector<Block> now = firstCall() == nullptr ? std::vector<Block>() : firstCall()->todos();
    checks_.check(!ticked.empty() &&
                      std::ranges::any_of(now, [&](const Block& todo) { return todo.text == ticked && todo.done; }),
                  "…keeping the to-do you ticked");
    model_.useLocalSummary(call_);
    checks_.check(providerIs(true, std::nullopt), "Use Varnic’s goes back to the on-device summary");
}

void UserJourney::exportCall() {
    model_.renameThem(call_, themName);
    const fs::path folder = model_.dataDirectory() / "exports";
    fs::create_directories(folder);
    std::string markdown;
    for (const ExportFormat format : allExportFormats) {
        std::string bytes;
        std::string problem;
        try {
            const fs::path file = folder / Exporter::fileName(*firstCall(), format);
            model_.exportFile(call_, format, file);
            bytes = contentsOf(file);
        } catch (const std::exception& error) {
            problem = error.what();
        }
        checks_.check(!bytes.empty(), fmt::format("exported {} ({} bytes)", title(format), bytes.size()), problem);
        if (format == ExportFormat::markdown) {
            markdown = std::move(bytes);
        }
    }
    checks_.check(markdown.contains(fmt::format("**{}**", themName)) &&
                      markdown.contains(fmt::format("**{}**", yourName)),
                  "the Markdown transcript uses both names");
}

std::string UserJourney::aiErrorText() const {
    const auto& errors = model_.aiError.value();
    const auto found = errors.find(call_);
    return found == errors.end() ? "" : found->second;
}

} // namespace varnic
