#include "VarnicCore/AISummariser/StatusText.h"

#include <algorithm>
#include <array>

namespace varnic {

namespace {

struct Row {
    int status;
    std::string_view text;
};

constexpr std::array rows{
    Row{100, "continue"},
    Row{101, "switching protocols"},
    Row{200, "no error"},
    Row{201, "created"},
    Row{202, "accepted"},
    Row{203, "non-authoritative information"},
    Row{204, "no content"},
    Row{205, "reset content"},
    Row{206, "partial content"},
    Row{300, "multiple choices"},
    Row{301, "moved permanently"},
    Row{302, "found"},
    Row{303, "see other"},
    Row{304, "not modified"},
    Row{305, "needs proxy"},
    Row{307, "temporarily redirected"},
    Row{400, "bad request"},
    Row{401, "unauthorized"},
    Row{402, "payment required"},
    Row{403, "forbidden"},
    Row{404, "not found"},
    Row{405, "method not allowed"},
    Row{406, "unacceptable"},
    Row{407, "proxy authentication required"},
    Row{408, "request timed out"},
    Row{409, "conflict"},
    Row{410, "no longer exists"},
    Row{411, "length required"},
    Row{412, "precondition failed"},
    Row{413, "request too large"},
    Row{414, "requested URL too long"},
    Row{415, "unsupported media type"},
    Row{416, "requested range not satisfiable"},
    Row{417, "expectation failed"},
    Row{500, "internal server error"},
    Row{501, "unimplemented"},
    Row{502, "bad gateway"},
    Row{503, "service unavailable"},
    Row{504, "gateway timed out"},
    Row{505, "unsupported version"},
};

} // namespace

std::string_view statusText(int status) {
    if (const auto* const row = std::ranges::find(rows, status, &Row::status); row != rows.end()) {
        return row->text;
    }
    switch (status / 100) {
    case 1:
        return "informational";
    case 2:
        return "success";
    case 3:
        return "redirected";
    case 4:
        return "client error";
    default:
        return "server error";
    }
}

} // namespace varnic
