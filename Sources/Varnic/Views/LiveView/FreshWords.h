#pragma once

#include <QStringList>

#include <vector>

namespace varnic {

/// Which of the words `after` a change are new to somebody who has read those `before` it. Speech engines change their
/// mind: words that merely moved, or got their capital or full stop, aren't new.
std::vector<bool> freshWords(const QStringList& before, const QStringList& after);

/// What makes two forms of a word the same one: its letters and numbers in lower case.
QString wordKey(QStringView word);

} // namespace varnic
