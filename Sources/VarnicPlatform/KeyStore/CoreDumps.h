#pragma once

namespace varnic {

/// From here on a crash of this process leaves no core dump, in a file or with a collector of them. To be called before
/// a key comes into memory: it is copied from there into requests and into the buffers of other libraries, so that
/// leaving out the pages that are known (MADV_DONTDUMP) would not leave out the key. Making the process undumpable
/// (PR_SET_DUMPABLE) would do, but then its /proc belongs to root, and the desktop's portals, which look there to see
/// who asks, refuse everything. Programs that this one starts get no core dumps either. Any thread.
void forbidCoreDumps();

} // namespace varnic
