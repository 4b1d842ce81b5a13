#pragma once

#include <register/NumberDialogs.h>
#include <ui/NumberDialog.h>

/// The number dialogs of the register in the common design; what they accept and where the number goes are
/// the rules of the core.
class KasseNumberDialog : public NumberDialog {
    Q_OBJECT

  public:
    KasseNumberDialog(till::NumberDialog rules, const QString& name, QWidget* parent);

  protected:
    void ok() override;
    bool cancelled() override;

  private:
    till::NumberDialog m_rules;
};

/// Discount in whole percent, into gRabattAngabe.
class frmKasseRabatt : public KasseNumberDialog {
    Q_OBJECT

  public:
    explicit frmKasseRabatt(QWidget* parent = nullptr);
};

/// The price of an article that is asked for at the sale, in gArtikel.VKPreis.
class frmKassePreisAngabe : public KasseNumberDialog {
    Q_OBJECT

  public:
    explicit frmKassePreisAngabe(QWidget* parent = nullptr);
};

/// Another price for the selected line, in gPreisAngabe.
class frmKasseFreierPreis : public KasseNumberDialog {
    Q_OBJECT

  public:
    explicit frmKasseFreierPreis(QWidget* parent = nullptr);
};

/// The amount of a credit note, in gArtikel.VKPreis.
class frmKasseGutschrift : public KasseNumberDialog {
    Q_OBJECT

  public:
    explicit frmKasseGutschrift(QWidget* parent = nullptr);
};

/// How much of an article is sold by weight or volume: gArtikel.Menge and its price.
class frmKasseVolumenAngabe : public KasseNumberDialog {
    Q_OBJECT

  public:
    explicit frmKasseVolumenAngabe(QWidget* parent = nullptr);
};
