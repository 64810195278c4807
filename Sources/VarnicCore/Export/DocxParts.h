#pragma once

#include "VarnicCore/Export/WordUnits.h"

#include <fmt/format.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>

/// What is the same in every Word file. For the implementation files of this folder.
namespace varnic::DocxParts {

inline constexpr const char* wordNamespace = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";
inline constexpr const char* word2010Namespace = "http://schemas.microsoft.com/office/word/2010/wordml";
inline constexpr const char* compatibilityNamespace = "http://schemas.openxmlformats.org/markup-compatibility/2006";

inline constexpr std::array<std::pair<const char*, const char*>, 4> propertyNamespaces{{
    {"xmlns:cp", "http://schemas.openxmlformats.org/package/2006/metadata/core-properties"},
    {"xmlns:dc", "http://purl.org/dc/elements/1.1/"},
    {"xmlns:dcterms", "http://purl.org/dc/terms/"},
    {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"},
}};

inline constexpr std::string_view contentTypes = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
<Default Extension="xml" ContentType="application/xml"/>
<Override PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/>
<Override PartName="/word/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.styles+xml"/>
<Override PartName="/word/settings.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.settings+xml"/>
<Override PartName="/word/fontTable.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.fontTable+xml"/>
<Override PartName="/docProps/core.xml" ContentType="application/vnd.openxmlformats-package.core-properties+xml"/>
</Types>
)";

inline constexpr std::string_view relations = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="word/document.xml"/>
<Relationship Id="rId2" Type="http://schemas.openxmlformats.org/package/2006/relationships/metadata/core-properties" Target="docProps/core.xml"/>
</Relationships>
)";

inline constexpr std::string_view documentRelations = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/>
<Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/settings" Target="settings.xml"/>
<Relationship Id="rId3" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/fontTable" Target="fontTable.xml"/>
</Relationships>
)";

/// A program without a font takes the one named beside it.
inline constexpr std::string_view fontTable = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<w:fonts xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main">
<w:font w:name="Vollkorn"><w:altName w:val="Georgia"/><w:charset w:val="00"/><w:family w:val="roman"/><w:pitch w:val="variable"/></w:font>
<w:font w:name="Inter"><w:altName w:val="Helvetica"/><w:charset w:val="00"/><w:family w:val="swiss"/><w:pitch w:val="variable"/></w:font>
</w:fonts>
)";

/// Laid out as by Word 2013 and later, without its mode for older files. The space between two paragraphs is the sum of
/// theirs, not the larger one, as elsewhere.
inline std::string settings() {
    return fmt::format(R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<w:settings xmlns:w="{}">
<w:defaultTabStop w:val="{}"/>
<w:compat><w:doNotUseHTMLParagraphAutoSpacing/><w:compatSetting w:name="compatibilityMode" w:uri="http://schemas.microsoft.com/office/word" w:val="15"/></w:compat>
</w:settings>
)",
                       wordNamespace, WordUnits::twips(tabInterval));
}

} // namespace varnic::DocxParts
