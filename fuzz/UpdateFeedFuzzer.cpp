#include "BrevinKit/UpdateError.h"
#include "BrevinKit/UpdateFeed.h"
#include "BrevinKit/UpdateLogic.h"

#include <cstdint>
#include <cstdlib>

/// Reads any bytes: they are a feed that is written and read again the same, or one error. What a feed says is then put
/// to the tests that the updater puts it to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brevin;
    try {
        const UpdateFeed feed = UpdateFeed::decode({reinterpret_cast<const char*>(data), size});
        const bool isHigher = UpdateLogic::isNewer(feed.version, feed.url);
        const bool isLower = UpdateLogic::isNewer(feed.url, feed.version);
        const bool isTrusted =
            feed.download && UpdateLogic::verify({data, size}, feed.download->edSignature, feed.download->url);
        const bool runs = UpdateLogic::systemSupports(feed.minimumSystemVersion, {INT64_MAX, INT64_MAX, INT64_MAX});
        if (UpdateFeed::decode(feed.encode()) != feed || (isHigher && isLower) || isTrusted || !runs) {
            std::abort();
        }
    } catch (const UpdateError& error) {
        if (error.message() != UpdateMessages::feedUnavailable) {
            std::abort();
        }
    }
    return 0;
}
