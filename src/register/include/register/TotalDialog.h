#pragma once

#include <QChar>
#include <QString>

namespace till {

/// The rules of the payment dialog (frmKasseTotal): it reads gZahlung.Betrag_Gesamt and fills the rest of
/// gZahlung. A text that is no amount counts as 0. Bar and AHVerkauf tell whether the dialog closes.
class TotalDialog {
  public:
    TotalDialog();

    [[nodiscard]] const QString& Summe() const { return m_summe; }     ///< txtSumme
    [[nodiscard]] const QString& Gegeben() const { return m_gegeben; } ///< txtGegeben
    [[nodiscard]] const QString& Back() const { return m_back; }       ///< txtBack

    /// Change of txtGegeben.
    void SetGegeben(const QString& text);
    /// The character that a key puts into txtGegeben: digits and ",", which "." becomes. A null character for
    /// all that is swallowed.
    [[nodiscard]] static QChar AcceptKey(QChar key);
    /// The "," key adds one only while there is none.
    [[nodiscard]] bool MayAddDecimal() const;
    void Clear(); ///< cmdClear: the whole sum again
    /// The key of a note: the first begins the amount, each further one is added to it.
    void AddNote(int euros);
    void Passend(); ///< exactly what is to pay, as when the dialog opened
    /// Less than the sum is given.
    [[nodiscard]] bool IsShort() const;
    /// The caption of txtBack: "Noch offen" while too little is given, else "Zurück".
    [[nodiscard]] QString BackCaption() const;
    /// Whether the user may leave the payment: the condition of cmdCancel.
    [[nodiscard]] static bool MayCancel();

    [[nodiscard]] bool Bar();
    /// Sets all lines to the reduced rate first. Raises what the statement raises.
    [[nodiscard]] bool AHVerkauf();
    /// Esc: true when the user may cancel the payment; the refusal is told.
    [[nodiscard]] bool Escape();

  private:
    QString m_summe, m_gegeben, m_back;
    QString m_notes; ///< the text that keys of notes have made
};

} // namespace till
