#include "VarnicCore/Models/Call.h"

#include "VarnicCore/Text/Unicode.h"

namespace varnic {

std::string CallRecord::name(Speaker speaker, const std::string& yourName) const {
    if (speaker == Speaker::you) {
        return yourName;
    }
    return Unicode::trimBlanks(themName).empty() ? std::string(label(Speaker::them)) : themName;
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
