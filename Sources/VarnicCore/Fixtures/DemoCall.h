#pragma once

#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Speaker.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// A short call about a launch, with decisions, figures and commitments in it.
namespace varnic::DemoCall {

/// The lines in order; the sides take turns, and they begin.
const std::vector<std::pair<Speaker, std::string>>& lines();

/// What each side says, in order.
std::map<Speaker, std::vector<std::string>> script();

/// A transcript without audio, from `start` seconds on; each line takes as long as its words at `pace` times 0.36
/// seconds.
std::vector<Segment> segments(double start, double pace);

/// The same of other lines.
std::vector<Segment> timed(const std::vector<std::pair<Speaker, std::string>>& spoken, double start, double pace);

} // namespace varnic::DemoCall
