#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

struct BetragAngabe;

namespace till {

/// The rules of the dialogs that ask for a line which stands for money: group, name, amount and tax rate.
class BetragDialog {
  public:
    enum Kind {
        KassenBuchung, ///< frmKasseEinlage: gKassenBuchung
        Gutschein,     ///< frmKasseGutschein: gGutscheinAngabe
    };
    enum class Field { None, WarenGruppe, Name, Betrag, SteuerSatz };

    explicit BetragDialog(Kind kind)
        : m_kind(kind) {}

    [[nodiscard]] QString Title() const;
    [[nodiscard]] QString Description() const;
    [[nodiscard]] BetragAngabe& record() const;     ///< what the fields open with, and where the answer goes
    [[nodiscard]] QStringList WarenGruppen() const; ///< groups of the articles on file
    [[nodiscard]] QStringList SteuerSaetze() const;
    [[nodiscard]] QString SteuerSatz() const; ///< the one to show
    /// The character that a typed one puts into txtBetrag and cboSteuerSatz; a null one when it is swallowed.
    [[nodiscard]] static QChar AcceptKey(Field field, QChar key);
    /// cmdOK. The first field that cannot be taken, which is told; None when the record is filled.
    [[nodiscard]] Field Confirm(const QString& warenGruppe, const QString& name, const QString& betrag,
                                const QString& steuerSatz) const;
    void Cancel() const;

  private:
    struct Texts;
    [[nodiscard]] const Texts& texts() const;

    Kind m_kind;
};

} // namespace till
