#pragma once

#include "VarnicCore/Models/Segment.h"

#include <filesystem>
#include <functional>
#include <vector>

/// The lines that are the far end's echo, told by the audio more than by the words.
namespace varnic::OverheardLines {

/// A transcript without your lines that are spoken over a line of theirs and have hardly any energy left where the far
/// end's echo is taken out of the microphone's track, or less than half of it where the words are theirs, too. Reads no
/// more of the tracks than it takes to learn the echo and to look at those lines; `reading` is called again and again
/// meanwhile. Throws AudioError and what `reading` throws.
std::vector<Segment> remove(std::vector<Segment> transcript, const std::filesystem::path& you,
                            const std::filesystem::path& them, const std::function<void()>& reading);

} // namespace varnic::OverheardLines
