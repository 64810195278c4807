#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What tells that a speech model has lost itself: such models now and then repeat a phrase without end. Pure.
namespace varnic::TranscriptGuards {

/// Whether a text of so many tokens for so many seconds of audio is to be mistrusted: too many tokens, a phrase that
/// repeats, or too little in it for its length.
bool isSuspicious(std::string_view text, std::size_t tokens, double seconds);

/// Whether some phrase stands four times in a row, or a single word six times; capitals and punctuation do not count.
bool repeats(std::string_view text);

/// The text with one of each phrase that `repeats`.
std::string withoutRepeats(std::string_view text);

/// How many times smaller zlib makes the text, with a byte for a letter of most scripts. A plain sentence or two have
/// about 1.4.
double compressionRatio(std::string_view text);

/// For each word of the text, as Tokens::split has them, whether somebody said it. The others describe a sound, as some
/// models do:
/// "(dramatic music)", "[BLANK_AUDIO]", "*sighs*", "♪". What is opened and not closed goes on to the end.
std::vector<bool> saidWords(std::string_view text);

/// Whether there is anything to read in it.
bool hasLetter(std::string_view text);

} // namespace varnic::TranscriptGuards
