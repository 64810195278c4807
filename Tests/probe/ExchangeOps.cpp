#include "probe/Ops.h"

#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Export/MarkdownImport.h"

namespace varnic::probe {

namespace {

Json fileName(const Arguments& args) {
    const auto format = exportFormatFrom(args.text("format"));
    if (!format) {
        throw ProbeError("no such format: " + args.text("format"));
    }
    return Exporter::fileName(args.note(), *format);
}

Json metaLine(const Arguments& args) {
    const Note note = args.note();
    if (!note.call) {
        throw ProbeError("the note must have a call");
    }
    return Exporter::metaLine(*note.call, args.region());
}

Json markdown(const Arguments& args) {
    const Arguments inner(args.at("options"));
    const ExportOptions options{.includeTranscript = inner.boolean("includeTranscript"),
                                .includeEmail = inner.boolean("includeEmail"),
                                .yourName = inner.text("yourName")};
    return Exporter::markdown(args.note(), options, args.region());
}

Json importMarkdown(const Arguments& args) {
    const MarkdownImport::Document document = MarkdownImport::blocks(args.text("text"));
    Json object{{"blocks", encode(document.blocks)}};
    if (document.title) {
        object["title"] = *document.title;
    }
    return object;
}

} // namespace

Operations exchangeOps() {
    return {
        {"export.fileName", fileName},
        {"export.metaLine", metaLine},
        {"export.markdown", markdown},
        {"import.markdown", importMarkdown},
        {"import.splitRow", [](const Arguments& args) -> Json { return MarkdownImport::splitRow(args.text("line")); }},
    };
}

} // namespace varnic::probe
