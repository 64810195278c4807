#pragma once

#include <QString>
#include <QValidator>
#include <QtQmlIntegration>

namespace varnic {

/// A text that was put into a field of one line, without line breaks: those within are blanks, those at its ends
/// nothing, for other programs copy one behind each name.
QString oneLine(QString text);

/// For a TextInput: takes the line breaks out of what is pasted or dropped into it. Qt's keeps them, though it shows
/// none. Main thread.
class OneLine : public QValidator {
    Q_OBJECT
    QML_ELEMENT

public:
    using QValidator::QValidator;

    State validate(QString& text, int& cursor) const override;
};

} // namespace varnic
