#include "VarnicCore/Text/EnglishModel.h"

#include <cstddef>

// The assembler copies the file into the program; a compiler would take minutes over an array of its size. The zeros
// after it are simdjson's padding.
asm(".pushsection .rodata\n"
    ".balign 64\n"
    ".hidden varnicEnglishModel\n"
    ".hidden varnicEnglishModelEnd\n"
    ".globl varnicEnglishModel\n"
    ".globl varnicEnglishModelEnd\n"
    "varnicEnglishModel:\n"
    ".incbin \"" VARNIC_TAGGER_MODEL "\"\n"
    "varnicEnglishModelEnd:\n"
    ".skip 64\n"
    ".popsection\n");

extern "C" {
extern const char varnicEnglishModel[];
extern const char varnicEnglishModelEnd[];
}

namespace varnic {

std::string_view englishModel() {
    return {varnicEnglishModel, static_cast<std::size_t>(varnicEnglishModelEnd - varnicEnglishModel)};
}

} // namespace varnic
