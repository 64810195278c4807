#include "VarnicCore/Models/Call.h"

#include "VarnicCore/Text/Language.h"
#include "VarnicCore/Text/Unicode.h"

namespace varnic {

std::string CallRecord::name(Speaker speaker, const std::string& yourName) const {
    if (speaker == Speaker::you) {
        return yourName;
    }
    return Unicode::trimBlanks(themName).empty() ? std::string(label(Speaker::them)) : themName;
}

const EmailDraft* CallRecord::email() const {
    const bool isDrafted =
        digest && (!digest->isLocal || Language::isEnglish(language) || digest->email != EmailDraft());
    return isDrafted ? &digest->email : nullptr;
}

std::optional<double> CallRecord::yourShare() const {
    double yours = 0;
    double total = 0;
    for (const Segment& segment : segments) {
        total += segment.duration();
        if (segment.speaker == Speaker::you) {
            yours += segment.duration();
        }
    }
    if (total > 0) {
        return yours / total;
    }
    return std::nullopt;
}

} // namespace varnic
