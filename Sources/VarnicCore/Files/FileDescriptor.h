#pragma once

#include <unistd.h>

#include <utility>

namespace varnic {

/// Owns an open file of the system and closes it; holds -1 when opening failed.
class FileDescriptor {
public:
    explicit FileDescriptor(int number) : number_(number) {}

    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    ~FileDescriptor() {
        if (isOpen()) {
            ::close(number_);
        }
    }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

} // namespace varnic
