#include "VarnicPlatform/KeyStore/CoreDumps.h"

#include <sys/resource.h>

#include <algorithm>

namespace varnic {

void forbidCoreDumps() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_CORE, &limit) == 0) {
        // Bytes. Too little for a file; and of 1, but not of 0, the kernel calls no collector either.
        limit.rlim_cur = std::min<rlim_t>(1, limit.rlim_max);
        ::setrlimit(RLIMIT_CORE, &limit);
    }
}

} // namespace varnic
