#pragma once

#include "VarnicCore/AISummariser/HTTPTransport.h"

#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// What came of asking a server that speaks the chat completions form which models it has.
struct ServerAnswer {
    enum class Kind {
        models,      ///< It answers as it should, perhaps with no model.
        badAddress,  ///< The address can't be one.
        unreachable, ///< Nothing answers there, or the way there fails.
        timedOut,    ///< Something takes the connection, but says nothing.
        notHTTP,     ///< Something answers that isn't a web server.
        refused,     ///< It wants a key, or another one (401, 403).
        notAnAPI     ///< A web server answers, but not with a list of models.
    };

    Kind kind = Kind::models;
    /// As the server names them, in its order.
    std::vector<std::string> models;
    /// For the user.
    std::string sentence;

    bool operator==(const ServerAnswer&) const = default;
};

namespace ServerModels {

/// What is wrong with an address as it was typed, the user's sentence; nothing where it can be one. Blanks around it
/// are none of it.
std::optional<std::string> problemOf(std::string_view address);

/// Asks the server for its models, with a key if there is one. Blocks for some seconds at most where nothing moves.
/// Throws http::Cancellation soon after a request through `stop`, and nothing else. Any thread.
ServerAnswer ask(std::string_view address, const std::optional<std::string>& key, const HTTPTransport& transport,
                 std::stop_token stop);

} // namespace ServerModels
} // namespace varnic
