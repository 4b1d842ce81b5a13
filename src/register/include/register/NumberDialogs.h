#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

namespace till {

/// The rules of the one-number dialogs.
class NumberDialog {
  public:
    enum Kind {
        Rabatt,      ///< frmKasseRabatt: whole percent into gRabattAngabe
        PreisAngabe, ///< frmKassePreisAngabe: gArtikel.VKPreis
        FreierPreis, ///< frmKasseFreierPreis: gPreisAngabe.Preis, may be negative
        Gutschrift,  ///< frmKasseGutschrift: gArtikel.VKPreis
        Volumen,     ///< frmKasseVolumenAngabe: gArtikel.Menge, and the price that belongs to it
    };
    explicit NumberDialog(Kind kind)
        : m_kind(kind) {}

    [[nodiscard]] QString Title() const;
    [[nodiscard]] QString Description() const;
    [[nodiscard]] QString OpensWith() const;
    [[nodiscard]] bool HasDecimal() const; ///< cmdDecimal
    [[nodiscard]] bool HasMinus() const;   ///< cmdMinus
    /// The character that a typed one puts into the box; a null character when it is swallowed.
    [[nodiscard]] QChar AcceptKey(QChar key) const;
    /// cmdEnter: leaves the result in the dialog's record. False when the dialog stays open with what is then
    /// in `text`: for a number that is too large or beyond its limit and not meant. Raises 13 for a text that
    /// is none.
    bool Confirm(QString& text) const;
    void Cancel() const; ///< Esc

  private:
    struct Rules;
    [[nodiscard]] const Rules& rules() const;

    Kind m_kind;
};

/// The rules of the free article dialog (frmKasseFreierArtikel) over gFreierArtikel.
namespace FreierArtikelDialog {
[[nodiscard]] QStringList SteuerSaetze(); ///< both rates as "0.0"
[[nodiscard]] QString SteuerSatz();       ///< the one to show
[[nodiscard]] QStringList WarenGruppen(); ///< groups sold so far
/// cmdOK: false when it must stay open because the name is missing, which is told. Raises 13 for a rate that
/// is no number.
[[nodiscard]] bool Confirm(const QString& name, const QString& steuerSatz, const QString& warenGruppe);
void Cancel();
} // namespace FreierArtikelDialog

} // namespace till
