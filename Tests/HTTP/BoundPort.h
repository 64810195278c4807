#pragma once

#include <string>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace varnic {

/// A port of this computer that is bound. Unless it is told to listen, every connection to it is refused.
class BoundPort {
public:
    BoundPort() {
        ::bind(socket_, reinterpret_cast<sockaddr*>(&address_), sizeof address_);
        socklen_t size = sizeof address_;
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size);
    }

    BoundPort(const BoundPort&) = delete;
    BoundPort& operator=(const BoundPort&) = delete;

    ~BoundPort() {
        ::close(client_);
        ::close(socket_);
    }

    /// Connections succeed, and nobody ever answers.
    void listen() const { ::listen(socket_, 8); }

    /// Waits until a client has connected and said something.
    void awaitClient() {
        client_ = ::accept(socket_, nullptr, nullptr);
        char byte = 0;
        static_cast<void>(::recv(client_, &byte, 1, 0));
    }

    [[nodiscard]] std::string url(const std::string& scheme = "http") const {
        return scheme + "://127.0.0.1:" + std::to_string(ntohs(address_.sin_port));
    }

private:
    int socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    int client_ = -1;
    sockaddr_in address_{
        .sin_family = AF_INET, .sin_port = 0, .sin_addr = {.s_addr = htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
};

} // namespace varnic
