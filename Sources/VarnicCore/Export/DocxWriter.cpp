#include "VarnicCore/Export/DocxWriter.h"

#include "VarnicCore/Export/DocxParts.h"
#include "VarnicCore/Export/WordUnits.h"
#include "VarnicCore/Export/ZipArchive.h"

#include <fmt/format.h>
#include <pugixml.hpp>

#include <cstdlib>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <variant>

namespace varnic::DocxWriter {

namespace {

using pugi::xml_node;
using WordUnits::twips;

/// The style of a role, by Word's own names, which its navigation goes by. `level` counts from 0; -1 for none.
struct RoleStyle {
    const char* id;
    const char* name;
    int level;
};

RoleStyle styleOf(ParagraphRole role) {
    switch (role) {
    case ParagraphRole::title:
        return {"Title", "Title", -1};
    case ParagraphRole::heading:
        return {"Heading1", "heading 1", 0};
    case ParagraphRole::subheading:
        return {"Heading2", "heading 2", 1};
    case ParagraphRole::text:
        break;
    }
    return {"Normal", "Normal", -1};
}

template <typename Value>
xml_node add(xml_node parent, const char* name, Value value) {
    xml_node node = parent.append_child(name);
    node.append_attribute("w:val") = value;
    return node;
}

void addFlag(xml_node parent, bool isSet, std::initializer_list<const char*> names) {
    if (isSet) {
        for (const char* name : names) {
            parent.append_child(name);
        }
    }
}

// The order of the elements in the two functions below is the schema's.

void addLooks(xml_node parent, const Run& run, bool isRightToLeft) {
    const auto [red, green, blue] = WordUnits::bytes(run.colour);
    const char* const family = run.font.typeface == Typeface::serif ? "Vollkorn" : "Inter";
    xml_node looks = parent.append_child("w:rPr");
    xml_node fonts = looks.append_child("w:rFonts");
    for (const char* script : {"w:ascii", "w:hAnsi", "w:eastAsia", "w:cs"}) {
        fonts.append_attribute(script) = family;
    }
    addFlag(looks, run.font.semibold, {"w:b", "w:bCs"});
    addFlag(looks, run.font.italic, {"w:i", "w:iCs"});
    addFlag(looks, run.struckThrough, {"w:strike"});
    add(looks, "w:color", fmt::format("{:02X}{:02X}{:02X}", red, green, blue).c_str());
    add(looks, "w:sz", WordUnits::halfPoints(run.font.size));
    add(looks, "w:szCs", WordUnits::halfPoints(run.font.size));
    addFlag(looks, isRightToLeft, {"w:rtl"});
    if (run.font.typeface == Typeface::serif) {
        looks.append_child("w14:numForm").append_attribute("w14:val") = "lining";
    }
    if (run.font.typeface == Typeface::digits) {
        looks.append_child("w14:numSpacing").append_attribute("w14:val") = "tabular";
    }
}

void addLayout(xml_node properties, const ParagraphStyle& style, bool isRightToLeft) {
    if (style.tabStop) {
        xml_node stop = add(properties.append_child("w:tabs"), "w:tab", "left");
        stop.append_attribute("w:pos") = twips(*style.tabStop);
    }
    addFlag(properties, isRightToLeft, {"w:bidi"});
    xml_node spacing = properties.append_child("w:spacing");
    spacing.append_attribute("w:before") = twips(style.before);
    spacing.append_attribute("w:after") = twips(style.after);
    spacing.append_attribute("w:line") = WordUnits::lines(style.lineHeightMultiple);
    spacing.append_attribute("w:lineRule") = "auto";
    if (style.firstLineIndent != 0 || style.headIndent != 0) {
        const int first = twips(style.firstLineIndent - style.headIndent);
        xml_node indent = properties.append_child("w:ind");
        indent.append_attribute("w:left") = twips(style.headIndent);
        indent.append_attribute(first < 0 ? "w:hanging" : "w:firstLine") = std::abs(first);
    }
    if (style.alignment == Alignment::centred) {
        add(properties, "w:jc", "center");
    }
}

/// Where the first tab or line break is, or the text's end.
std::size_t firstBreak(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && text[at] != '\t' && !text.substr(at).starts_with(lineBreak)) {
        ++at;
    }
    return at;
}

/// Adds text as Word wants it: tabs and line breaks are elements.
void addText(xml_node run, std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = firstBreak(text);
        if (end > 0) {
            xml_node words = run.append_child("w:t");
            words.append_attribute("xml:space") = "preserve";
            words.text() = std::string(text.substr(0, end)).c_str();
        }
        text.remove_prefix(end);
        if (text.starts_with('\t')) {
            run.append_child("w:tab");
            text.remove_prefix(1);
        } else if (text.starts_with(lineBreak)) {
            run.append_child("w:br");
            text.remove_prefix(lineBreak.size());
        }
    }
}

void addParagraph(xml_node body, const Paragraph& paragraph) {
    xml_node node = body.append_child("w:p");
    xml_node properties = node.append_child("w:pPr");
    add(properties, "w:pStyle", styleOf(paragraph.style.role).id);
    addLayout(properties, paragraph.style, paragraph.isRightToLeft);
    // The looks of the paragraph's mark, which an empty paragraph's height comes from.
    addLooks(properties, paragraph.runs.back(), paragraph.isRightToLeft);
    for (const Run& run : paragraph.runs) {
        xml_node runNode = node.append_child("w:r");
        addLooks(runNode, run, paragraph.isRightToLeft);
        addText(runNode, run.text);
    }
}

/// The cells of a row with tabs between them.
Paragraph joined(const std::vector<Paragraph>& cells) {
    Paragraph line = cells.front();
    for (std::size_t column = 1; column < cells.size(); ++column) {
        line.runs.back().text += '\t';
        line.runs.insert(line.runs.end(), cells[column].runs.begin(), cells[column].runs.end());
    }
    return line;
}

void addItem(xml_node body, const StyledText::Item& item) {
    if (const auto* paragraph = std::get_if<Paragraph>(&item)) {
        addParagraph(body, *paragraph);
        return;
    }
    for (const auto& row : std::get<StyledTable>(item).rows) {
        addParagraph(body, joined(row));
    }
}

void addPage(xml_node body, PageSize size, double margin) {
    xml_node section = body.append_child("w:sectPr");
    xml_node page = section.append_child("w:pgSz");
    page.append_attribute("w:w") = twips(size.width);
    page.append_attribute("w:h") = twips(size.height);
    xml_node margins = section.append_child("w:pgMar");
    for (const char* side : {"w:top", "w:right", "w:bottom", "w:left"}) {
        margins.append_attribute(side) = twips(margin);
    }
    for (const char* unused : {"w:header", "w:footer", "w:gutter"}) {
        margins.append_attribute(unused) = 0;
    }
}

/// A style that looks as the paragraph does.
void addStyle(xml_node styles, ParagraphRole role, const Paragraph& like) {
    const auto [id, name, level] = styleOf(role);
    xml_node style = styles.append_child("w:style");
    style.append_attribute("w:type") = "paragraph";
    if (role == ParagraphRole::text) {
        style.append_attribute("w:default") = "1";
    }
    style.append_attribute("w:styleId") = id;
    add(style, "w:name", name);
    if (role != ParagraphRole::text) {
        add(style, "w:basedOn", "Normal");
        add(style, "w:next", "Normal");
    }
    style.append_child("w:qFormat");
    xml_node properties = style.append_child("w:pPr");
    addLayout(properties, like.style, false);
    if (level >= 0) {
        add(properties, "w:outlineLvl", level);
    }
    addLooks(style, like.runs.front(), false);
}

std::string saved(const pugi::xml_document& document) {
    std::ostringstream stream;
    document.save(stream, "", pugi::format_raw, pugi::encoding_utf8);
    return std::move(stream).str();
}

xml_node rootOf(pugi::xml_document& document, const char* name) {
    xml_node root = document.append_child(name);
    root.append_attribute("xmlns:w") = DocxParts::wordNamespace;
    root.append_attribute("xmlns:w14") = DocxParts::word2010Namespace;
    root.append_attribute("xmlns:mc") = DocxParts::compatibilityNamespace;
    root.append_attribute("mc:Ignorable") = "w14";
    return root;
}

std::string document(const StyledText& text, PageSize size, double margin) {
    pugi::xml_document document;
    xml_node body = rootOf(document, "w:document").append_child("w:body");
    for (const StyledText::Item& item : text.items()) {
        addItem(body, item);
    }
    addPage(body, size, margin);
    return saved(document);
}

/// The styles of the roles that the text has, each as its first paragraph looks.
std::string styles(const StyledText& text) {
    std::map<ParagraphRole, Paragraph> firsts{{ParagraphRole::text, Paragraph{.runs = {Run{}}}}};
    for (const StyledText::Item& item : text.items()) {
        if (const auto* paragraph = std::get_if<Paragraph>(&item)) {
            firsts.try_emplace(paragraph->style.role, *paragraph);
        }
    }
    pugi::xml_document document;
    xml_node root = rootOf(document, "w:styles");
    for (const auto& [role, paragraph] : firsts) {
        addStyle(root, role, paragraph);
    }
    return saved(document);
}

std::string properties(const StyledText& text) {
    pugi::xml_document document;
    xml_node root = document.append_child("cp:coreProperties");
    for (const auto& [name, uri] : DocxParts::propertyNamespaces) {
        root.append_attribute(name) = uri;
    }
    root.append_child("dc:title").text() = text.title().c_str();
    root.append_child("dc:creator").text() = "Varnic";
    for (const auto& [name, moment] :
         {std::pair("dcterms:created", text.created()), std::pair("dcterms:modified", text.modified())}) {
        xml_node node = root.append_child(name);
        node.append_attribute("xsi:type") = "dcterms:W3CDTF";
        node.text() = moment.c_str();
    }
    return saved(document);
}

} // namespace

std::string write(const StyledText& text, PageSize size, double margin) {
    ZipArchive archive;
    archive.add("[Content_Types].xml", DocxParts::contentTypes);
    archive.add("_rels/.rels", DocxParts::relations);
    archive.add("docProps/core.xml", properties(text));
    archive.add("word/document.xml", document(text, size, margin));
    archive.add("word/_rels/document.xml.rels", DocxParts::documentRelations);
    archive.add("word/styles.xml", styles(text));
    archive.add("word/settings.xml", DocxParts::settings());
    archive.add("word/fontTable.xml", DocxParts::fontTable);
    return archive.finish();
}

} // namespace varnic::DocxWriter
