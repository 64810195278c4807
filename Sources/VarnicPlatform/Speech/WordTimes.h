#pragma once

#include "VarnicCore/Audio/VoiceActivity.h"
#include "VarnicCore/Transcript/Utterances.h"

#include <string_view>
#include <vector>

/// When words were said. Pure.
namespace varnic::WordTimes {

/// For engines that do not tell: the words of a text over the voiced runs in which they were said, each in one run and
/// by its length. Where the runs' pauses fall between words is chosen by the lengths on both sides, punctuation before
/// a pause preferred. Nothing without runs.
std::vector<TimedWord> spread(std::string_view text, const std::vector<VoiceActivity::Range>& voiced);

/// Words as an engine timed them, in order, with the pauses before and behind a word taken from it: engines count those
/// to one of its sides. The last word before a pause lasts until that, within a second. A word in whose time there is
/// no voice begins with the next one, if that comes before the word behind it, and stays as it is otherwise.
void fit(std::vector<TimedWord>& words, const std::vector<VoiceActivity::Range>& voiced);

} // namespace varnic::WordTimes
