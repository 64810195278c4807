#pragma once

#include <sys/resource.h>

#include <csignal>

namespace varnic {

/// Lets files grow to so many bytes, as a full disk does, until `lift` or the end.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

    ~FileSizeLimit() {
        lift();
        std::signal(SIGXFSZ, handler_);
    }

    void lift() const { ::setrlimit(RLIMIT_FSIZE, &before_); }

private:
    using Handler = void (*)(int);

    Handler handler_;
    rlimit before_{};
};

} // namespace varnic
