#pragma once

#include <QLineEdit>

#include <functional>

class TouchKey;
class QGridLayout;

/// The entry box of numbers, with the one filter of keys that all of them use: digits, Backspace and the keys
/// that move the cursor; "." becomes ",", and "-" is taken where it is allowed. Everything else is swallowed.
/// What is pasted passes the same filter. Enter is left to the form.
class NumberEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(bool decimal READ decimal WRITE setDecimal)
    Q_PROPERTY(bool minus READ minus WRITE setMinus)

  public:
    explicit NumberEdit(QWidget* parent = nullptr);
    [[nodiscard]] bool decimal() const { return m_decimal; }
    void setDecimal(bool allowed) { m_decimal = allowed; }
    [[nodiscard]] bool minus() const { return m_minus; }
    void setMinus(bool allowed) { m_minus = allowed; }
    /// Rules in place of the two above: the character that a typed one puts into the box, a null one to
    /// swallow it.
    void setFilter(std::function<QChar(QChar typed)> filter) { m_filter = std::move(filter); }

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] QChar ownFilter(QChar typed) const;
    /// What of `typed` may enter the box.
    [[nodiscard]] QString sieve(const QString& typed) const;
    std::function<QChar(QChar)> m_filter;
    bool m_decimal = true, m_minus = false;
};

/// The block of digits, reusable with any entry box: every key is sent to its target as the keystroke it
/// stands for, so the box applies its own rules. The keys are named cmdNumber0 to cmdNumber9, cmdClear,
/// cmdDecimal, cmdMinus, cmdEnter, cmdMal, cmdPlus and cmdSearch.
///
///     pad->setKeys(DigitPad::Clear | DigitPad::Enter | DigitPad::Decimal);
///     pad->setTarget(ui->txtInput);
///     connect(pad, &DigitPad::enter, this, &frmX::on_enter);
class DigitPad : public QWidget {
    Q_OBJECT

  public:
    enum Key { Decimal = 1, Minus = 2, Clear = 4, Enter = 8, Mal = 16, Plus = 32, Search = 64 };
    Q_DECLARE_FLAGS(Keys, Key)

    explicit DigitPad(QWidget* parent = nullptr);
    /// Which keys stand beside the digits; builds the block anew.
    void setKeys(Keys keys);
    [[nodiscard]] Keys keys() const { return m_keys; }
    /// The box that gets the keystrokes; without one the keys only raise their signals.
    void setTarget(QLineEdit* target);
    static constexpr const char* ownPad = "ownPad"; ///< property of a box that has digits beside it
    /// nullptr when the block has no such key.
    [[nodiscard]] TouchKey* digit(int value) const;
    [[nodiscard]] TouchKey* key(Key key) const;

  signals:
    /// Raised after the target got the keystroke.
    void digitPressed(int value);
    /// `clear` empties the target first. `decimal` types "," and `minus` "-" unless the target already holds
    /// one.
    void clear();
    void decimal();
    void minus();
    /// These do nothing of their own.
    void enter();
    void mal();
    void plus();
    void search();

  private:
    TouchKey* add(const QString& name, const QString& caption, int row, int column, int rows = 1,
                  int columns = 1);
    void type(const QString& text);
    void typeOnce(QChar sign);

    Keys m_keys;
    QLineEdit* m_target = nullptr;
    QGridLayout* m_grid = nullptr;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(DigitPad::Keys)

/// Selects the whole content of an entry box, as it is done when a box gets the focus.
void SelectAllText(QLineEdit* box);
