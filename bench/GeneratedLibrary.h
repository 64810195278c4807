#pragma once

#include "VarnicCore/Models/Note.h"

#include <cstddef>
#include <filesystem>
#include <vector>

/// Made-up notes for benchmarks and tests, the same ones on every run: calls in words that look like English, with
/// transcript, digest and blocks of every kind.
namespace varnic::GeneratedLibrary {

/// A note of about so many bytes in its stored form; a few thousand at least. `index` tells it from the others.
Note note(std::size_t index, std::size_t bytes);

/// So many notes of different lengths that take about `totalBytes` together.
std::vector<Note> notes(std::size_t count, std::size_t totalBytes);

/// Writes the same notes to the library at `root`, without forcing them to the disk. Throws std::runtime_error.
void write(const std::filesystem::path& root, std::size_t count, std::size_t totalBytes);

} // namespace varnic::GeneratedLibrary
