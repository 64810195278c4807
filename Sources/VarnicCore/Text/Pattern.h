#pragma once

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace varnic {

/// A regular expression of ICU, compiled once; meant for constants. All functions may run on any thread at the same
/// time. Positions are UTF-16 units.
class Pattern {
public:
    enum class Case { sensitive, insensitive };

    struct Match {
        std::int32_t begin = 0;
        std::int32_t end = 0;
    };

    /// Throws std::invalid_argument for an expression that does not compile.
    explicit Pattern(std::string_view expression, Case letters = Case::sensitive);

    /// The first match in the text.
    [[nodiscard]] std::optional<Match> find(const icu::UnicodeString& text) const;

    /// The match that begins at `from`, as though the text began there.
    [[nodiscard]] std::optional<Match> matchAt(std::int32_t from, const icu::UnicodeString& text) const;

    [[nodiscard]] bool isIn(const icu::UnicodeString& text) const { return find(text).has_value(); }

    /// The text with every match replaced; "$1" stands for the first group.
    [[nodiscard]] icu::UnicodeString replaceAll(const icu::UnicodeString& text,
                                                const icu::UnicodeString& replacement) const;

private:
    using Matcher = std::unique_ptr<icu::RegexMatcher>;

    /// A matcher of this pattern for the use of one caller, on the text, which must outlive the lease.
    class Lease {
    public:
        Lease(const Pattern& pattern, const icu::UnicodeString& text);
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        ~Lease();

        icu::RegexMatcher* operator->() const { return matcher_.get(); }

    private:
        const Pattern& pattern_;
        Matcher matcher_;
    };

    std::unique_ptr<icu::RegexPattern> compiled_;
    // Matchers are dearer to make than most matches are to find: the idle ones are kept.
    mutable std::mutex mutex_;
    mutable std::vector<Matcher> idle_;
};

} // namespace varnic
