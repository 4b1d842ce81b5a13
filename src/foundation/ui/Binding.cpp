#include <text/Convert.h>
#include <text/Format.h>
#include <text/RuntimeError.h>
#include <ui/Binding.h>
#include <ui/DigitPad.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

void refuse(QWidget* control, const QString& text, MsgIcon icon) {
    MsgBox(text, icon);
    control->setFocus();
    if (auto* box = qobject_cast<QLineEdit*>(control)) SelectAllText(box);
}

} // namespace

bool FirstFailure(std::initializer_list<Check> checks) {
    for (const Check& check : checks) {
        if (!check.broken()) continue;
        refuse(check.control, check.text, check.icon);
        return true;
    }
    return false;
}

bool IsEmpty(const QLineEdit* box) { return box->text().trimmed().isEmpty(); }
bool IsEmpty(const QComboBox* box) { return box->currentText().trimmed().isEmpty(); }

void Binding::text(QLineEdit* box, QString& field, int most) {
    exact(box, field, most);
    m_ties.back().take = [box, &field] {
        field = box->text().trimmed();
        return true;
    };
}

void Binding::exact(QLineEdit* box, QString& field, int most) {
    if (most > 0) box->setMaxLength(most);
    m_ties.push_back({[box, &field] {
                          box->setText(field);
                          box->setCursorPosition(0);
                      },
                      [box, &field] {
                          field = box->text();
                          return true;
                      }});
}

void Binding::flag(QCheckBox* box, bool& field) {
    m_ties.push_back({[box, &field] { box->setChecked(field); },
                      [box, &field] {
                          field = box->isChecked();
                          return true;
                      }});
}

void Binding::numeric(QLineEdit* box, std::function<void()> fill, std::function<void(const QString&)> convert,
                      const QString& failure) {
    m_ties.push_back({std::move(fill), [box, convert = std::move(convert), failure] {
                          try {
                              convert(box->text());
                              return true;
                          } catch (const RuntimeError& error) {
                              if (error.Number != 13 && error.Number != 6) throw;
                              refuse(box, failure, MsgIcon::Information);
                              return false;
                          }
                      }});
}

void Binding::money(QLineEdit* box, Currency& field, const QString& format, const QString& failure) {
    numeric(
        box, [box, &field, format] { box->setText(Format(field, format)); },
        [&field](const QString& text) { field = CCur(text); }, failure);
}

void Binding::number(QLineEdit* box, double& field, const QString& failure) {
    numeric(
        box, [box, &field] { box->setText(NumberText(field)); },
        [&field](const QString& text) { field = CDbl(text); }, failure);
}

void Binding::number(QLineEdit* box, int& field, const QString& failure) {
    numeric(
        box, [box, &field] { box->setText(QString::number(field)); },
        [&field](const QString& text) { field = CLng(text); }, failure);
}

void Binding::choice(QComboBox* box, QString& field, std::function<QStringList()> entries, int most) {
    if (most > 0 && box->lineEdit() != nullptr) box->lineEdit()->setMaxLength(most);
    m_ties.push_back({[box, &field, entries = std::move(entries)] {
                          box->clear();
                          if (entries) box->addItems(entries());
                          box->setCurrentIndex(box->findText(field, Qt::MatchFixedString));
                          if (box->isEditable()) box->setEditText(field);
                      },
                      [box, &field] {
                          field = box->currentText().trimmed();
                          return true;
                      }});
}

void Binding::fill() const {
    for (const Tie& tie : m_ties)
        tie.fill();
}

bool Binding::take() const {
    for (const Tie& tie : m_ties) {
        if (!tie.take()) return false;
    }
    return true;
}
