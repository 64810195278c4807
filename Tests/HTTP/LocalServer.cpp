#include "HTTP/LocalServer.h"

#include <fmt/format.h>
#include <glib.h>

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace varnic {

LocalServer::LocalServer(const std::string& script, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"python3", VARNIC_FIXTURES "/" + script});
    std::vector<char*> words;
    for (std::string& argument : arguments) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    int output = -1;
    constexpr auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    if (g_spawn_async_with_pipes(nullptr, words.data(), nullptr, flags, nullptr, nullptr, &process_, &input_, &output,
                                 nullptr, nullptr) == FALSE) {
        throw std::runtime_error("the local server doesn't start");
    }
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> lines(::fdopen(output, "r"), std::fclose);
    std::array<char, 4096> line{};
    static_cast<void>(std::fgets(line.data(), line.size(), lines.get()));
    std::istringstream fields(line.data());
    if (!(fields >> port_ >> securePort_ >> certificate_)) {
        throw std::runtime_error("the local server names no ports");
    }
}

LocalServer::~LocalServer() {
    ::close(input_);
    ::waitpid(process_, nullptr, 0);
}

std::string LocalServer::url(const std::string& scenario) const {
    return fmt::format("http://127.0.0.1:{}/{}", port_, scenario);
}

std::string LocalServer::secureURL(const std::string& scenario) const {
    return fmt::format("https://127.0.0.1:{}/{}", securePort_, scenario);
}

} // namespace varnic
