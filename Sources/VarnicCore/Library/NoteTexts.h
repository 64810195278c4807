#pragma once

#include "VarnicCore/Library/NoteSearch.h"
#include "VarnicCore/Models/Note.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace varnic {

/// The texts of a note that are searched, in the order of the document: title, blocks, transcript, email. The note must
/// outlive this. One thread at a time.
class NoteTexts {
public:
    explicit NoteTexts(const Note& note);

    [[nodiscard]] std::size_t size() const { return emailAt_ + (hasEmail_ ? 1 : 0); }

    [[nodiscard]] SearchHit::Field field(std::size_t index) const;

    /// The parts that the text is joined from; none for a block that is not searched. Valid until the next call.
    [[nodiscard]] std::span<const std::string_view> pieces(std::size_t index);

    [[nodiscard]] std::string text(std::size_t index);

    /// Null except for the text of a block.
    [[nodiscard]] const Block* block(std::size_t index) const;
    /// Null except for a line of the transcript.
    [[nodiscard]] const Segment* segment(std::size_t index) const;

private:
    void addBlock(const Block& block);

    const Note& note_;
    std::string title_;
    /// The prefix of the other party's lines.
    std::string them_;
    std::size_t transcriptAt_;
    std::size_t emailAt_;
    bool hasEmail_;
    std::vector<std::string_view> pieces_;
};

} // namespace varnic
