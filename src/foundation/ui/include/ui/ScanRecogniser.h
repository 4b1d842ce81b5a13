#pragma once

#include <QChar>
#include <QString>

/// How a scanner types. The characters around a code are null when there are none.
struct ScanFigures {
    int characters = 6; ///< a scan has at least so many; below 1 none is recognised
    int gap = 35;       ///< milliseconds from one character to the next at most
    QChar prefix, suffix;

    /// Those of konfig.ini ([SCANNER]). A prefix or suffix that is neither a character nor "#" and the number
    /// of one (1 to 65535) counts as none.
    [[nodiscard]] static ScanFigures FromSettings();
};

/// Tells scans from typing by the times of the keys alone: a scan is a burst of characters, each within the
/// gap of the one before, closed by Enter, Tab or the suffix. Nobody types six keys in a row that fast.
///
///     switch (scans.press(kind, character, milliseconds).fate) {
///     case Fate::Typed: ...   // a person's: pass it on
///     case Fate::Waits: ...   // may belong to a scan: until a later key or pause() tells
///     case Fate::Scan: ...    // it and all that waits are a scan: code()
///     }
///
/// Times are milliseconds of any clock that does not run backwards.
class ScanRecogniser {
  public:
    enum class Kind {
        Character, ///< writes a character
        Close,     ///< Enter or Tab
        Silent,    ///< Shift and the like, and what writes no character that can be seen: a scanner sends
                   ///< them among the characters
        Other      ///< all that no scanner sends
    };
    enum class Fate {
        Typed,
        Waits,
        Scan, ///< closes a scan
        Rest  ///< Enter or Tab behind a suffix that has closed it
    };
    struct Verdict {
        bool before = false; ///< what waited until now was typed by a person
        Fate fate = Fate::Typed;
    };

    /// Takes effect with the next key that does not continue a burst.
    void setFigures(const ScanFigures& figures) { m_next = figures; }

    /// `character` counts for Character alone.
    [[nodiscard]] Verdict press(Kind kind, QChar character, qint64 time);
    /// No key until `now`: true when that makes typing of what waits, which is then forgotten.
    [[nodiscard]] bool pause(qint64 now);
    /// Another window has the keyboard since `now`. A burst that begins at once may have begun in the one
    /// before: half the characters are enough for it.
    void windowChanged(qint64 now) { m_changed = now; }

    [[nodiscard]] bool waiting() const { return m_waiting; }
    /// The burst that waits began with the prefix.
    [[nodiscard]] bool prefixed() const { return m_prefixed; }
    /// When pause() decides at the earliest.
    [[nodiscard]] qint64 due() const { return m_last + patience(); }
    /// The code of the last scan, without what the scanner puts around it.
    [[nodiscard]] const QString& code() const { return m_code; }
    /// Forgets what waits.
    void reset();

  private:
    [[nodiscard]] bool complete() const;
    [[nodiscard]] qint64 patience() const;
    [[nodiscard]] Verdict scan(Verdict verdict);
    void add(QChar character, qint64 time);

    ScanFigures m_figures, m_next;
    QString m_code;
    qint64 m_last = 0; ///< time of the last character
    qint64 m_changed = -1;
    bool m_waiting = false, m_prefixed = false, m_tail = false, m_suffixed = false;
};
