#include "VarnicCore/Text/Pattern.h"

#include "VarnicCore/Text/Unicode.h"

#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace varnic {

namespace {

/// An expression of ours on a text in memory fails for want of memory only: the limits on time and on the stack of
/// matches are off.
void check(UErrorCode status) {
    if (U_FAILURE(status) != 0) {
        throw std::bad_alloc();
    }
}

} // namespace

Pattern::Pattern(std::string_view expression, Case letters) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    const std::uint32_t flags = letters == Case::insensitive ? UREGEX_CASE_INSENSITIVE : 0;
    compiled_.reset(icu::RegexPattern::compile(Unicode::utf16(expression), flags, where, status));
    if (U_FAILURE(status) != 0) {
        throw std::invalid_argument("Bad regular expression " + std::string(expression));
    }
}

Pattern::Lease::Lease(const Pattern& pattern, const icu::UnicodeString& text) : pattern_(pattern) {
    {
        const std::lock_guard lock(pattern.mutex_);
        if (!pattern.idle_.empty()) {
            matcher_ = std::move(pattern.idle_.back());
            pattern.idle_.pop_back();
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    if (!matcher_) {
        matcher_.reset(pattern.compiled_->matcher(status));
        check(status);
        matcher_->setStackLimit(0, status);
        check(status);
    }
    matcher_->reset(text);
}

Pattern::Lease::~Lease() {
    const std::lock_guard lock(pattern_.mutex_);
    pattern_.idle_.push_back(std::move(matcher_));
}

std::optional<Pattern::Match> Pattern::find(const icu::UnicodeString& text) const {
    const Lease matcher(*this, text);
    UErrorCode status = U_ZERO_ERROR;
    const bool found = matcher->find(status) != 0;
    check(status);
    if (!found) {
        return std::nullopt;
    }
    return Match{matcher->start(status), matcher->end(status)};
}

std::optional<Pattern::Match> Pattern::matchAt(std::int32_t from, const icu::UnicodeString& text) const {
    const Lease matcher(*this, text);
    UErrorCode status = U_ZERO_ERROR;
    matcher->region(from, text.length(), status);
    const bool found = matcher->lookingAt(status) != 0;
    check(status);
    if (!found) {
        return std::nullopt;
    }
    return Match{from, matcher->end(status)};
}

icu::UnicodeString Pattern::replaceAll(const icu::UnicodeString& text, const icu::UnicodeString& replacement) const {
    const Lease matcher(*this, text);
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString replaced = matcher->replaceAll(replacement, status);
    check(status);
    return replaced;
}

} // namespace varnic
