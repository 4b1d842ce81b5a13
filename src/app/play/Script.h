#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace play {

/// One line of a script: a verb and what it applies to.
struct Step {
    QString script; ///< "" when there is but one
    int line = 0;
    QString verb, argument;
    [[nodiscard]] QString place() const; ///< "Zeile 7" or "noon.txt, Zeile 7"
};

// clang-format off
/// A script is UTF-8 text, one step a line; "#" starts a comment line. Verbs and what they mean:
///
///     note TEXT             a heading in the log
///     clock hh:mm           sets the clock of the program
///     window NAME           waits until the window of that name has the focus
///     scan CODE             types the code and Enter, as a scanner does, whatever has the focus; a dialog refuses it
///     type TEXT             types the text where the focus is
///     key F10, key Ctrl+F1  presses a key
///     press NAME            clicks the control of that name in the window
///     choose NAME TEXT      picks an entry of a list or a combo by the arrow keys
///     menu TEXT             picks an entry of the open menu by the arrow keys
///     box ANSWER TEXT       waits for a message box that holds the text and presses OK, Abbrechen, Ja or Nein
///     see NAME TEXT         waits until the control shows the text
///     lines N               waits until the open sale of this till has N lines
///     booked ART TOTAL      waits for the next booked receipt; kind of payment and total must be these
///     receipt TEXT          waits for the next receipt on the serial printer, which must hold the text
///     page NAME             waits for the next document of the PDF printer, which must be called so
///     form FILE             prints the receipt that was booked last by the template of that name
///     stock NUMBER AMOUNT   the stock of an article must be this
///     query VALUE SQL       the first value that the statement finds, as text without blanks, must be this
///     shot NAME             saves a picture of the screen
///
/// `name` is told beside the line. Raises 5 and tells the line for an unknown verb or a missing argument.
// clang-format on
[[nodiscard]] QList<Step> parseScript(const QByteArray& text, const QString& name = {});

/// First word and the rest, both trimmed.
[[nodiscard]] std::pair<QString, QString> firstWord(const QString& text);

} // namespace play
