#pragma once

#include "VarnicCore/Models/Note.h"
#include "VarnicCore/Models/Region.h"

#include <string>

/// Notes and digests for a person, on standard output.
namespace varnic::cli {

/// Title, facts, blocks and transcript of a note. `yourName` stands for you where it is not empty.
void print(const Note& note, const std::string& yourName, const Region& region);

/// Title, key sentences, to-dos and email of a digest.
void print(const CallDigest& digest, const std::string& yourName, const std::string& theirName);

/// What went wrong with the note's call, in one sentence, and how to mend it here; empty where nothing did.
std::string problemText(const Note& note);

} // namespace varnic::cli
