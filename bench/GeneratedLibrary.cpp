#include "bench/GeneratedLibrary.h"

#include "VarnicCore/Library/LibraryStore.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

namespace varnic::GeneratedLibrary {

namespace {

constexpr std::uint64_t seed = 20'260'314;

/// Common words first: a word is drawn the more often the further in front it stands.
constexpr std::array<std::string_view, 128> words{
    "the",      "to",        "and",       "we",       "a",        "of",        "I",        "that",     "you",
    "it",       "is",        "in",        "on",       "for",      "so",        "this",     "with",     "be",
    "have",     "was",       "do",        "at",       "can",      "but",       "will",     "about",    "if",
    "they",     "there",     "what",      "week",     "just",     "think",     "know",     "need",     "one",
    "time",     "our",       "from",      "by",       "not",      "would",     "get",      "up",       "then",
    "should",   "them",      "all",       "when",     "out",      "more",      "well",     "go",       "now",
    "team",     "could",     "make",      "how",      "send",     "some",      "really",   "people",   "right",
    "first",    "next",      "Monday",    "before",   "budget",   "because",   "after",    "design",   "customer",
    "report",   "number",    "question",  "draft",    "Friday",   "schedule",  "contract", "price",    "review",
    "meeting",  "version",   "problem",   "morning",  "invoice",  "product",   "quarter",  "launch",   "market",
    "research", "feedback",  "office",    "supplier", "page",     "agree",     "email",    "happy",    "decision",
    "weather",  "longer",    "thousand",  "garden",   "proposal", "café",      "window",   "résumé",   "delivery",
    "account",  "insurance", "migration", "printer",  "holiday",  "translate", "museum",   "bicycle",  "harbour",
    "kitchen",  "orchestra", "lantern",   "pension",  "violin",   "glacier",   "tariff",   "workshop", "naïve",
    "umbrella", "ledger"};

constexpr std::array<std::string_view, 5> sources{"Zoom", "Microsoft Teams", "FaceTime", "Slack", "Call"};
constexpr std::array<std::string_view, 6> people{"Maya", "Jonas", "Priya", "Tom Okafor", "Søren", ""};

/// The engine's numbers are the same everywhere; the standard library's distributions are not.
class Writer {
public:
    explicit Writer(std::size_t index) : engine_(seed + index) {}

    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }

    std::size_t between(std::size_t low, std::size_t high) { return low + below(high - low + 1); }

    bool oneIn(std::size_t count) { return below(count) == 0; }

    Speaker speaker() { return oneIn(2) ? Speaker::you : Speaker::them; }

    Uuid uuid() {
        Uuid id;
        std::ranges::generate(id.bytes, [this] { return static_cast<std::uint8_t>(engine_()); });
        return id;
    }

    std::string phrase(std::size_t count) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += i == 0 ? "" : " ";
            text += words.at(std::min(below(words.size()), below(words.size())));
        }
        return text;
    }

    std::string sentence() {
        std::string text = phrase(between(4, 9));
        if (oneIn(3)) {
            text += ", " + phrase(between(3, 8));
        }
        if (text.front() >= 'a' && text.front() <= 'z') {
            text.front() = static_cast<char>(text.front() - 'a' + 'A');
        }
        if (oneIn(6)) {
            return text + "?";
        }
        return text + (oneIn(12) ? " — “" + phrase(2) + "”." : ".");
    }

    std::string sentences(std::size_t count) {
        std::string text = sentence();
        for (std::size_t i = 1; i < count; ++i) {
            text += " " + sentence();
        }
        return text;
    }

    Block block(BlockKind kind, std::string text) {
        Block made;
        made.id = uuid();
        made.kind = kind;
        made.text = std::move(text);
        return made;
    }

private:
    std::mt19937_64 engine_;
};

ActionItem action(Writer& writer) {
    ActionItem item{.id = writer.uuid(), .text = "Send " + writer.phrase(5), .owner = {}, .due = {}, .at = {}};
    if (!writer.oneIn(3)) {
        item.owner = writer.speaker();
        item.at = static_cast<double>(writer.below(3'600'000)) / 1000;
    }
    if (writer.oneIn(2)) {
        item.due = "by Friday";
    }
    return item;
}

CallDigest digest(Writer& writer, Date created) {
    CallDigest made;
    made.title = writer.phrase(4);
    for (std::size_t i = writer.between(2, 5); i > 0; --i) {
        made.summary.push_back(writer.sentence());
    }
    for (std::size_t i = writer.below(4); i > 0; --i) {
        made.actions.push_back(action(writer));
    }
    made.email.subject = "Follow-up: " + made.title;
    made.email.body = "Hi,\n\n" + writer.sentences(3) + "\n\nBest,\nSam";
    made.provider = "On this Mac";
    made.createdAt = created;
    return made;
}

std::vector<Block> digestBlocks(Writer& writer, const CallDigest& digest) {
    std::vector<Block> blocks{writer.block(BlockKind::heading, "Summary")};
    for (const std::string& sentence : digest.summary) {
        blocks.push_back(writer.block(BlockKind::bullet, sentence));
    }
    for (const ActionItem& item : digest.actions) {
        Block todo = writer.block(BlockKind::todo, item.text);
        todo.owner = item.owner;
        todo.due = item.due;
        todo.done = writer.oneIn(3);
        blocks.push_back(std::move(todo));
    }
    for (Block& block : blocks) {
        block.fromDigest = true;
    }
    return blocks;
}

std::vector<Block> ownBlocks(Writer& writer, Date created) {
    std::vector<Block> blocks{writer.block(BlockKind::subheading, "Notes"),
                              writer.block(BlockKind::paragraph, writer.sentences(writer.between(1, 4))),
                              writer.block(BlockKind::quote, writer.sentence()),
                              writer.block(BlockKind::divider, {}),
                              writer.block(BlockKind::table, {}),
                              writer.block(BlockKind::flashcard, writer.sentence()),
                              writer.block(BlockKind::paragraph, {})};
    for (std::size_t row = writer.between(2, 4); row > 0; --row) {
        blocks.at(4).rows.push_back({writer.phrase(1), writer.phrase(2), std::to_string(writer.below(1000))});
    }
    blocks.at(5).back = writer.phrase(3);
    blocks.at(5).card = CardState{.box = static_cast<int>(writer.between(1, 5)),
                                  .due = created + std::chrono::days(writer.below(30)),
                                  .reviews = static_cast<int>(writer.below(20))};
    return blocks;
}

/// Fills the transcript until the note has about so many bytes.
void addSegments(Writer& writer, CallRecord& call, std::size_t bytes) {
    constexpr std::size_t bytesBesideText = 190; // keys, id, times and indents of a segment
    double time = 0;
    for (std::size_t size = 0; size < bytes;) {
        Segment line;
        line.id = writer.uuid();
        line.speaker = writer.speaker();
        line.start = time;
        line.end = time + static_cast<double>(writer.between(600, 12'000)) / 1000;
        line.text = writer.sentences(writer.between(1, 3));
        time = line.end + static_cast<double>(writer.below(900)) / 1000;
        size += bytesBesideText + line.text.size();
        call.segments.push_back(std::move(line));
    }
    call.duration = time;
}

/// The sizes of the notes vary by a factor of seven around their mean.
std::size_t sizeOf(std::size_t index, std::size_t count, std::size_t totalBytes) {
    constexpr std::array<std::size_t, 5> eighths{2, 4, 6, 14, 14};
    return totalBytes / count * eighths.at(index % eighths.size()) / 8;
}

} // namespace

Note note(std::size_t index, std::size_t bytes) {
    Writer writer(index);
    const std::chrono::minutes minutes(writer.below(std::size_t{2} * 365 * 24 * 60));
    const std::chrono::milliseconds rest(writer.below(60'000));
    const Date created = std::chrono::sys_days(std::chrono::year(2024) / 1 / 1) + minutes + rest;
    CallRecord call;
    call.startedAt = created;
    call.source = sources.at(writer.below(sources.size()));
    call.themName = people.at(writer.below(people.size()));
    call.tracks = {Speaker::you, Speaker::them};
    call.digest = digest(writer, created);
    std::vector<Block> blocks = digestBlocks(writer, *call.digest);
    std::ranges::move(ownBlocks(writer, created), std::back_inserter(blocks));
    Note made(writer.uuid(), call.digest->title, created, std::move(blocks));
    made.call = std::move(call);
    made.modified = created + std::chrono::minutes(writer.below(10'000));
    made.pinned = writer.oneIn(20);
    const std::size_t size = LibraryStore::encoded(made).size();
    addSegments(writer, *made.call, bytes - std::min(bytes, size));
    if (!writer.oneIn(3)) {
        made.call->audioFolder = made.id.text();
    }
    return made;
}

std::vector<Note> notes(std::size_t count, std::size_t totalBytes) {
    std::vector<Note> made;
    made.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        made.push_back(note(index, sizeOf(index, count, totalBytes)));
    }
    return made;
}

void write(const std::filesystem::path& root, std::size_t count, std::size_t totalBytes) {
    const LibraryStore store(root);
    for (std::size_t index = 0; index < count; ++index) {
        const Note made = note(index, sizeOf(index, count, totalBytes));
        std::ofstream file(store.url(made.id), std::ios::binary);
        if (!(file << LibraryStore::encoded(made)).flush()) {
            throw std::runtime_error(fmt::format("cannot write {}", store.url(made.id).string()));
        }
    }
}

} // namespace varnic::GeneratedLibrary
