#pragma once

#include <QString>

/// What the next message box has behind "Einzelheiten", for the one who mends the machine: the words of a
/// library or the system. They are logged at once. Empty ones are none.
///
///     const MessageDetails details(file.errorString());
///     MsgBox(u"Die Datei kann nicht geschrieben werden."_s);
class MessageDetails {
  public:
    explicit MessageDetails(const QString& text);
    ~MessageDetails();
    MessageDetails(const MessageDetails&) = delete;
    MessageDetails& operator=(const MessageDetails&) = delete;

    /// For the one who shows the box; the box behind it has none any more.
    [[nodiscard]] static QString Take();

  private:
    QString m_before;
};
