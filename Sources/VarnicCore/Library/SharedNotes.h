#pragma once

#include "VarnicCore/Models/Note.h"

#include <compare>
#include <cstddef>
#include <iterator>
#include <memory>
#include <unordered_map>
#include <vector>

namespace varnic {

/// A note that whoever holds it may read on any thread: it never changes. An edit puts another one in its place.
using SharedNote = std::shared_ptr<const Note>;

/// The notes of a library in memory, whose ids all differ. Copying `all` takes a pointer a note and gives another
/// thread the library as it is now. One thread at a time.
class SharedNotes {
public:
    /// Goes over the notes themselves.
    class Iterator {
    public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = Note;
        using difference_type = std::ptrdiff_t;
        using pointer = const Note*;
        using reference = const Note&;

        Iterator() = default;

        explicit Iterator(std::vector<SharedNote>::const_iterator at) : at_(at) {}

        reference operator*() const { return **at_; }

        pointer operator->() const { return at_->get(); }

        reference operator[](difference_type by) const { return *at_[by]; }

        Iterator& operator+=(difference_type by) {
            at_ += by;
            return *this;
        }

        Iterator& operator-=(difference_type by) { return *this += -by; }

        Iterator& operator++() { return *this += 1; }

        Iterator& operator--() { return *this += -1; }

        Iterator operator++(int) { return Iterator(at_++); }

        Iterator operator--(int) { return Iterator(at_--); }

        friend Iterator operator+(Iterator a, difference_type by) { return a += by; }

        friend Iterator operator+(difference_type by, Iterator a) { return a += by; }

        friend Iterator operator-(Iterator a, difference_type by) { return a -= by; }

        friend difference_type operator-(Iterator a, Iterator b) { return a.at_ - b.at_; }

        bool operator==(const Iterator&) const = default;
        auto operator<=>(const Iterator&) const = default;

        [[nodiscard]] auto base() const { return at_; }

    private:
        std::vector<SharedNote>::const_iterator at_;
    };

    using value_type = Note;
    using iterator = Iterator;
    using const_iterator = Iterator;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;

    SharedNotes() = default;
    SharedNotes(std::vector<Note> notes); // implicit: the same notes, shared

    [[nodiscard]] const std::vector<SharedNote>& all() const { return notes_; }

    [[nodiscard]] Iterator begin() const { return Iterator(notes_.begin()); }

    [[nodiscard]] Iterator end() const { return Iterator(notes_.end()); }

    [[nodiscard]] std::size_t size() const { return notes_.size(); }

    [[nodiscard]] bool empty() const { return notes_.empty(); }

    [[nodiscard]] const Note& front() const { return *notes_.front(); }

    [[nodiscard]] const Note& back() const { return *notes_.back(); }

    /// Null where there is no such note.
    [[nodiscard]] SharedNote find(const Uuid& id) const;

    void insert(Iterator before, Note note);
    void push_back(Note note); // NOLINT(readability-identifier-naming): as containers call it
    /// Puts the note in the place of the one that has its id, which must be there.
    void replace(Note note);
    void erase(const Uuid& id);

private:
    std::vector<SharedNote> notes_;
    std::unordered_map<Uuid, SharedNote> byId_;
};

} // namespace varnic
