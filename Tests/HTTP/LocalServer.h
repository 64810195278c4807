#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace varnic {

/// The server of ai_server.py, or of another script beside it that begins in the same way, as a process of its own, as
/// long as the object lives.
class LocalServer {
public:
    /// Throws std::runtime_error where it does not start.
    LocalServer() : LocalServer("ai_server.py", {}) {}

    LocalServer(const std::string& script, std::vector<std::string> arguments);
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;
    ~LocalServer();

    /// The base URL under which this is what happens (see the script).
    [[nodiscard]] std::string url(const std::string& scenario) const;
    /// The same over TLS, with a certificate that nobody trusts.
    [[nodiscard]] std::string secureURL(const std::string& scenario) const;

    /// The file of that certificate.
    [[nodiscard]] const std::string& certificate() const { return certificate_; }

private:
    pid_t process_ = -1;
    /// The server ends when this is closed.
    int input_ = -1;
    int port_ = 0;
    int securePort_ = 0;
    std::string certificate_;
};

} // namespace varnic
