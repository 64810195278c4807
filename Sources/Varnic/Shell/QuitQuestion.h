#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <array>
#include <string>

namespace varnic {

/// What the program asks before it ends with notes that it could not save.
struct QuitQuestion {
    enum class Answer {
        tryAgain,
        saveCopies,
        quitAnyway,
        /// The question was closed: the program goes on.
        stay
    };

    struct Choice {
        Answer answer;
        const char* text;
    };

    /// The buttons in their order.
    static constexpr std::array<Choice, 3> choices{{{Answer::tryAgain, "Try Again"},
                                                    {Answer::saveCopies, "Save a Copy Elsewhere…"},
                                                    {Answer::quitAnyway, "Quit Anyway"}}};

    std::string title;
    /// Why, and what becomes of the notes without an answer.
    std::string detail;

    /// The question about the notes that are not on disk; there must be one.
    static QuitQuestion about(const AppModel& model);
};

} // namespace varnic
