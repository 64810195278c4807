#include "BrevinKit/Updater/Fetch.h"

#include "BrevinKit/Bundle/OpenFile.h"
#include "BrevinKit/UpdateError.h"
#include "HTTP/Client.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string_view>

#include <fcntl.h>

namespace brevin::Fetch {

namespace {

using namespace std::chrono_literals;

/// Of a publisher’s server and of the one that it leaves its downloads to.
constexpr int mostRedirects = 5;

/// So that a full disk is known before the first byte is asked for. Not every file system can.
void reserve(int descriptor, std::int64_t length) {
    if (length > 0 && ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, length) != 0 &&
        (errno == ENOSPC || errno == EFBIG || errno == EDQUOT)) {
        throwErrno();
    }
}

} // namespace

UpdateFeed feed(const std::string& url, const std::stop_token& stop) {
    std::string json;
    const http::Receiver receiver{.longest = UpdateFeed::longest,
                                  .body = [&json](std::string_view bytes) { json += bytes; }};
    int status = 0;
    try {
        status = http::send({.url = url, .timeout = 30s, .overallTimeout = 2min, .mostRedirects = mostRedirects},
                            receiver, stop);
    } catch (const http::Error&) {
        throw UpdateError(UpdateMessages::feedUnavailable);
    }
    if (status != 200) {
        throw UpdateError(UpdateMessages::feedUnavailable);
    }
    return UpdateFeed::decode(json);
}

void archive(const UpdateFeed::Download& download, const std::filesystem::path& file,
             const std::function<void(double)>& progress, const std::stop_token& stop) {
    const OpenFile opened(file, O_WRONLY | O_CREAT | O_EXCL);
    reserve(opened.number(), download.length);
    std::uint64_t received = 0;
    const http::Receiver receiver{
        .longest = static_cast<std::uint64_t>(std::max<std::int64_t>(download.length, 0)),
        .head =
            [](int status) {
                if (status / 100 != 2) {
                    throw UpdateError(UpdateMessages::downloadRefused);
                }
            },
        .body =
            [&](std::string_view bytes) {
                opened.write(bytes);
                received += bytes.size();
            },
        .progress =
            [&](std::uint64_t count) { progress(static_cast<double>(count) / static_cast<double>(download.length)); }};
    try {
        http::send({.url = download.url, .mostRedirects = mostRedirects}, receiver, stop);
    } catch (const http::Error& error) {
        if (error.kind() == http::Error::Kind::bodyTooLong) {
            throw UpdateError(UpdateMessages::downloadTooLarge);
        }
        throw;
    }
    if (received != receiver.longest) {
        throw UpdateError(UpdateMessages::downloadIncomplete);
    }
}

} // namespace brevin::Fetch
