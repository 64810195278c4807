#include "VarnicCLI/NotePrinter.h"

#include "Varnic/AppModel/AppModel.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCLI/UserLibrary.h"
#include "VarnicCore/Models/CallProblem.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Text/Unicode.h"
#include "VarnicCore/Transcript/Diarisation.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace varnic::cli {

namespace {

using Terminal::bold;
using Terminal::faint;

/// Lines of one speaker that are no further apart (seconds) stand together.
constexpr double turnGap = 2.0;

struct Names {
    std::string you;
    std::string them;

    Names(const std::string& yourName, const std::string& theirName)
        : you(Unicode::trim(yourName).empty() ? label(Speaker::you) : yourName),
          them(Unicode::trim(theirName).empty() ? label(Speaker::them) : theirName) {}

    [[nodiscard]] const std::string& of(Speaker speaker) const { return speaker == Speaker::you ? you : them; }
};

/// " (Maya, due Friday)", or nothing where neither is known.
std::string tag(std::optional<Speaker> owner, const std::optional<std::string>& due, const Names& names) {
    std::vector<std::string> parts;
    if (owner) {
        parts.push_back(names.of(*owner));
    }
    if (due) {
        parts.push_back("due " + *due);
    }
    return parts.empty() ? std::string() : faint(fmt::format(" ({})", fmt::join(parts, ", ")));
}

void printBlock(const Block& block, const Names& names) {
    switch (block.kind) {
    case BlockKind::heading:
    case BlockKind::subheading:
        Terminal::print("\n{}\n", bold(block.text));
        break;
    case BlockKind::todo:
        Terminal::print("  [{}] {}{}\n", block.done ? 'x' : ' ', block.text, tag(block.owner, block.due, names));
        break;
    case BlockKind::bullet:
        Terminal::print("  • {}\n", block.text);
        break;
    case BlockKind::quote:
        Terminal::print("  > {}\n", block.text);
        break;
    case BlockKind::table:
        for (const auto& row : block.rows) {
            Terminal::print("  {}\n", fmt::join(row, " | "));
        }
        break;
    case BlockKind::flashcard:
        Terminal::print("  {} — {}\n", block.text, block.back);
        break;
    case BlockKind::divider:
        Terminal::print("  ———\n");
        break;
    case BlockKind::paragraph:
        if (!block.text.empty()) {
            Terminal::print("{}\n", block.text);
        }
        break;
    }
}

void printTranscript(const CallRecord& call, const Names& names) {
    Terminal::print("\n{}\n", bold("Transcript"));
    for (const Segment& turn : Diarisation::turns(call.segments, turnGap)) {
        Terminal::print("  {} {}: {}\n", faint(fmt::format("{:>7}", Clock::stamp(turn.start))),
                        bold(names.of(turn.speaker)), turn.text);
    }
}

} // namespace

void print(const Note& note, const std::string& yourName, const Region& region) {
    const Names names(yourName, note.call ? note.call->themName : "");
    Terminal::print("{}\n", bold(note.displayTitle()));
    Terminal::print(
        "{}\n", faint(fmt::format("{} · {}", region.format(note.created, "EEEE d MMMM yyyy, HH:mm"), note.id.text())));
    if (note.call) {
        Terminal::print("{}\n", faint(fmt::format("{} · {}", note.call->source, Clock::length(note.call->duration))));
        if (note.call->problem) {
            Terminal::print("\n{}\n", problemText(note));
        }
    }
    for (const Block& block : note.blocks) {
        printBlock(block, names);
    }
    if (note.call && !note.call->segments.empty()) {
        printTranscript(*note.call, names);
    }
}

std::string problemText(const Note& note) {
    if (!note.call || !note.call->problem) {
        return {};
    }
    const std::string advice = CallProblem::isQuit(note.call->problem)
                                   ? fmt::format("\nHere that is: varnic-cli transcribe --note {}", shortId(note))
                                   : "";
    return Wording::shown(*note.call->problem) + advice;
}

void print(const CallDigest& digest, const std::string& yourName, const std::string& theirName) {
    const Names names(yourName, theirName);
    Terminal::print("{}\n{}\n", bold(digest.title), faint("Summary by " + Wording::shown(digest.provider)));
    Terminal::print("\n{}\n", bold("Summary"));
    for (const std::string& sentence : digest.summary) {
        Terminal::print("  • {}\n", sentence);
    }
    Terminal::print("\n{}\n", bold("To-dos"));
    for (const ActionItem& action : digest.actions) {
        Terminal::print("  [ ] {}{}\n", action.text, tag(action.owner, action.due, names));
    }
    if (digest.email != EmailDraft()) {
        Terminal::print("\n{}\nSubject: {}\n\n{}\n", bold("Follow-up email"), digest.email.subject, digest.email.body);
    }
}

} // namespace varnic::cli
