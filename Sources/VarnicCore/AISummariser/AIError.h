#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace varnic {

/// Why there is no AI summary; `what()` is the user's sentence. Compares by kind, status and detail.
class AIError : public std::runtime_error {
public:
    enum class Kind {
        refused,     ///< The model declined; the detail is the category, where one is given.
        server,      ///< Any other status than those below; the detail is the server's message.
        badResponse, ///< The answer is not of the form asked for; the detail says how.
        noKey,
        badKey,
        noModel,
        badURL,
        rateLimited,
        overloaded,
        truncated,
        offline,
    };

    static AIError refused(const std::optional<std::string>& category);
    static AIError server(int status, const std::string& message);
    static AIError badResponse(const std::string& detail);

    static AIError noKey() { return of(Kind::noKey); }

    static AIError badKey() { return of(Kind::badKey); }

    static AIError noModel() { return of(Kind::noModel); }

    static AIError badURL() { return of(Kind::badURL); }

    static AIError rateLimited() { return of(Kind::rateLimited); }

    static AIError overloaded() { return of(Kind::overloaded); }

    static AIError truncated() { return of(Kind::truncated); }

    static AIError offline() { return of(Kind::offline); }

    /// The same error in other words.
    [[nodiscard]] AIError saying(const std::string& sentence) const { return {kind_, sentence}; }

    [[nodiscard]] Kind kind() const { return kind_; }

    /// The name of the kind, such as "badKey".
    [[nodiscard]] std::string_view name() const;

    bool operator==(const AIError& other) const {
        return kind_ == other.kind_ && std::string_view(what()) == other.what();
    }

private:
    AIError(Kind kind, const std::string& sentence) : std::runtime_error(sentence), kind_(kind) {}

    static AIError of(Kind kind);

    Kind kind_;
};

} // namespace varnic
