#include "probe/Ops.h"

#include "VarnicCore/Editor/NoteEditor.h"

#include <charconv>

namespace varnic::probe {

namespace {

/// One step of a run of the editor: its arguments, the note that it works on, and the clock's reading.
struct Step {
    Arguments args;
    Note& note;
    Date now;

    /// The block named by an id, or by "#N", its index in the note as it stands.
    [[nodiscard]] Uuid id(const std::string& key = "id") const {
        const std::string text = args.text(key);
        if (!text.starts_with('#')) {
            return args.uuid(key);
        }
        std::size_t index = 0;
        const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), index);
        if (error != std::errc() || end != text.data() + text.size()) {
            throw ProbeError(key + " must be a UUID or #N");
        }
        return index < note.blocks.size() ? note.blocks[index].id : Uuid::random();
    }

    [[nodiscard]] std::size_t index(const std::string& key) const {
        const int value = args.integer(key);
        return value < 0 ? note.blocks.max_size() : static_cast<std::size_t>(value);
    }

    [[nodiscard]] BlockKind kind() const {
        if (const auto kind = blockKindFrom(args.text("kind"))) {
            return *kind;
        }
        throw ProbeError("no such kind of block: " + args.text("kind"));
    }
};

Json idOrNull(const std::optional<Uuid>& id) {
    return id ? Json(id->text()) : Json();
}

Json returned(const std::optional<NoteEditor::ReturnResult>& result) {
    if (!result) {
        return nullptr;
    }
    if (const auto* made = std::get_if<NoteEditor::NewBlock>(&*result)) {
        return {{"newBlock", made->id.text()}};
    }
    return {{"leftList", std::get<NoteEditor::LeftList>(*result).id.text()}};
}

void insertBlock(const Step& step) {
    const auto after = step.args.has("after") ? std::optional(step.id("after")) : std::nullopt;
    NoteEditor::insert(step.args.stored<Block>("block"), after, step.note, step.now);
}

void setText(const Step& step) {
    const std::string text = step.args.text("text");
    NoteEditor::update(step.id(), step.note, step.now, [&text](Block& block) { block.text = text; });
}

void setCell(const Step& step) {
    NoteEditor::setCell(step.id(), step.index("row"), step.index("column"), step.args.text("text"), step.note,
                        step.now);
}

void applyDigest(const Step& step) {
    NoteEditor::apply(step.args.stored<CallDigest>("digest"), step.note, step.args.boolean("replaceTitle"), step.now);
}

/// The steps that give nothing.
const std::map<std::string, void (*)(const Step&)>& edits() {
    using namespace NoteEditor;
    static const std::map<std::string, void (*)(const Step&)> table{
        {"insert", insertBlock},
        {"move", [](const Step& s) { move(s.id(), s.args.integer("by"), s.note, s.now); }},
        {"setText", setText},
        {"setKind", [](const Step& s) { setKind(s.kind(), s.id(), s.note, s.now); }},
        {"setCell", probe::setCell},
        {"addRow", [](const Step& s) { addRow(s.id(), s.note, s.now); }},
        {"addColumn", [](const Step& s) { addColumn(s.id(), s.note, s.now); }},
        {"removeRow", [](const Step& s) { removeRow(s.index("index"), s.id(), s.note, s.now); }},
        {"removeColumn", [](const Step& s) { removeColumn(s.index("index"), s.id(), s.note, s.now); }},
        {"applyDigest", applyDigest},
    };
    return table;
}

const std::map<std::string, Json (*)(const Step&)>& answers() {
    using namespace NoteEditor;
    static const std::map<std::string, Json (*)(const Step&)> table{
        {"delete", [](const Step& s) { return idOrNull(remove(s.id(), s.note, s.now)); }},
        {"return", [](const Step& s) { return returned(pressReturn(s.id(), s.note, s.now)); }},
        {"deleteWhenEmpty", [](const Step& s) { return idOrNull(pressDeleteWhenEmpty(s.id(), s.note, s.now)); }},
        {"shortcut", [](const Step& s) { return Json(applyShortcut(s.id(), s.note, s.now)); }},
        {"plainText", [](const Step& s) { return Json(plainText(s.note)); }},
        {"wordCount", [](const Step& s) { return Json(wordCount(s.note)); }},
        {"readingMinutes", [](const Step& s) { return Json(readingMinutes(s.note)); }},
    };
    return table;
}

Json taken(const Step& step) {
    const std::string op = step.args.text("op");
    if (const auto edit = edits().find(op); edit != edits().end()) {
        edit->second(step);
        return nullptr;
    }
    if (const auto answer = answers().find(op); answer != answers().end()) {
        return answer->second(step);
    }
    throw ProbeError("unknown editor op " + op);
}

Json runEditor(const Arguments& args) {
    Note note = args.note();
    Json results = Json::array();
    for (const Json& step : args.at("ops")) {
        // A step sees the run's clock.
        results.push_back(taken({Arguments(step), note, args.now()}));
    }
    return {{"note", encode(note)}, {"results", std::move(results)}};
}

Json makeCallNote(const Arguments& args) {
    const auto digest = args.has("digest") ? std::optional(args.stored<CallDigest>("digest")) : std::nullopt;
    return encode(
        NoteEditor::callNote(args.uuid("id"), args.stored<CallRecord>("call"), digest, args.region(), args.now()));
}

} // namespace

Operations editorOps() {
    return {{"editor.run", runEditor}, {"editor.callNote", makeCallNote}};
}

} // namespace varnic::probe
