#pragma once

#include "VarnicCore/Pipeline/Transcriber.h"
#include "VarnicPlatform/Speech/LanguageIdentifier.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

/// Finds out which language is spoken, by the longest stretches of speech: in a few words models hear one they don't
/// know, and what is said in passing may be in another.
namespace varnic::LanguageSearch {

/// What one side speaks.
struct Heard {
    /// A language tag; empty where too little is said to tell.
    std::string language;
    /// How much is said in all.
    double seconds = 0;

    bool operator==(const Heard&) const = default;
};

/// Tells the language of samples, at LanguageIdentifier::rate; nothing where it can't.
using Identify = std::function<std::optional<std::string>(std::span<const float>)>;

/// The stretches that tell a side's language: as its audio goes by, the longest of what it has of speech.
class Stretches {
public:
    void add(std::span<const float> samples);

    /// What most of them are in, by their length. Only a language that `isKnown` counts.
    [[nodiscard]] Heard heard(const Identify& identify, const std::function<bool(std::string_view)>& isKnown) const;

private:
    /// The longest first.
    std::vector<std::vector<float>> longest_;
    double seconds_ = 0;
};

/// Goes once through a track. Throws as TrackSegmenter does.
Stretches stretchesOf(const SpokenTrack& track, const std::optional<std::filesystem::path>& detector,
                      const std::stop_token& stop);

/// The languages of a call by those of its sides. A side that doesn't tell speaks as the other one; where neither does,
/// and for the very place where its language is spoken, `usual` is taken.
SpokenLanguages together(const Heard& you, const Heard& them, const std::string& usual);

} // namespace varnic::LanguageSearch
