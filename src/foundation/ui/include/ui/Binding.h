#pragma once

#include <session/MsgBox.h>
#include <text/Currency.h>

#include <QString>

#include <functional>
#include <initializer_list>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QWidget;

/// What must hold before a form is accepted.
struct Check {
    Check(bool isBroken, QWidget* box, const QString& message, MsgIcon sign = MsgIcon::Information)
        : broken([isBroken] { return isBroken; })
        , control(box)
        , text(message)
        , icon(sign) {}
    /// For what asks the store and should do so only when all before it holds.
    Check(std::function<bool()> isBroken, QWidget* box, const QString& message,
          MsgIcon sign = MsgIcon::Information)
        : broken(std::move(isBroken))
        , control(box)
        , text(message)
        , icon(sign) {}
    std::function<bool()> broken;
    QWidget* control;
    QString text;
    MsgIcon icon;
};

/// Tells the first condition that is broken and moves the focus to its control, with its text selected. False
/// when all hold.
///
///     if (FirstFailure({{IsEmpty(m_ui->txtName), m_ui->txtName, u"Sie müssen ein Namen ... eingeben."_s}}))
///     return;
bool FirstFailure(std::initializer_list<Check> checks);
/// Nothing but blanks.
[[nodiscard]] bool IsEmpty(const QLineEdit* box);
[[nodiscard]] bool IsEmpty(const QComboBox* box);

/// Ties the controls of a form to the fields of a record. The record must live as long as the form.
///
///     m_binding.text(m_ui->txtName, m_record.Name, 50);
///     m_binding.money(m_ui->txtVKPreis, m_record.VKPreis, gFormatPreis, u"Sie müssen ..."_s);
///     m_binding.fill();
class Binding {
  public:
    /// `most` characters at the most; 0 for any number. Blanks at the ends are not taken.
    void text(QLineEdit* box, QString& field, int most = 0);
    void exact(QLineEdit* box, QString& field, int most = 0); ///< with all its blanks
    void flag(QCheckBox* box, bool& field);
    /// An amount; `failure` is told when the box holds none.
    void money(QLineEdit* box, Currency& field, const QString& format, const QString& failure);
    void number(QLineEdit* box, double& field, const QString& failure);
    void number(QLineEdit* box, int& field, const QString& failure); ///< a whole one
    /// One of a list that `entries` gives when the form is filled; an editable box takes any text.
    void choice(QComboBox* box, QString& field, std::function<QStringList()> entries, int most = 0);

    /// From the record into the controls.
    void fill() const;
    /// From the controls into the record, in the order in which they were tied. Stops at the first one that
    /// cannot be taken, tells it, and gives False; the fields before it are taken then.
    [[nodiscard]] bool take() const;

  private:
    struct Tie {
        std::function<void()> fill;
        std::function<bool()> take;
    };
    void numeric(QLineEdit* box, std::function<void()> fill, std::function<void(const QString&)> convert,
                 const QString& failure);
    std::vector<Tie> m_ties;
};
