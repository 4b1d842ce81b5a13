#pragma once

#include <QAbstractButton>

/// A key of the till: a caption that wraps and, when even that is not enough, is cut with an ellipsis, and
/// the shortcut in the upper right corner. Never lower than Theme::keyHeight. A click does not take the focus
/// away from the entry box; the tabulator reaches the key, Space and Enter press it.
///
///     key->setText(u"Storno"_s); key->setHint(u"F5"_s);
class TouchKey : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(QString hint READ hint WRITE setHint)
    Q_PROPERTY(bool accent READ accent WRITE setAccent)
    Q_PROPERTY(bool large READ isLarge WRITE setLarge)
    Q_PROPERTY(bool compact READ isCompact WRITE setCompact)
    Q_PROPERTY(QString tag READ tag WRITE setTag)

  public:
    explicit TouchKey(QWidget* parent = nullptr);
    explicit TouchKey(const QString& caption, QWidget* parent = nullptr);

    /// The shortcut as it is shown; it is only drawn, the form binds the key.
    [[nodiscard]] QString hint() const { return m_hint; }
    void setHint(const QString& hint);
    /// One of the keys that move the sale on.
    [[nodiscard]] bool accent() const { return m_accent; }
    void setAccent(bool accent);
    /// Caption in the large size, as on digits.
    [[nodiscard]] bool isLarge() const { return m_large; }
    void setLarge(bool large);
    /// Gives up the minimum height down to three quarters, for the many keys of a register on 768 lines.
    [[nodiscard]] bool isCompact() const { return m_compact; }
    void setCompact(bool compact);
    /// A text the form attaches, such as the article number behind the key.
    [[nodiscard]] QString tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// The lines of the caption as they are drawn on a key of the present size.
    [[nodiscard]] QStringList shownLines() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    [[nodiscard]] QFont captionFont() const;
    [[nodiscard]] QString caption() const; ///< without the mark of a mnemonic
    [[nodiscard]] QRect captionRect() const;

    QString m_hint, m_tag;
    bool m_accent = false, m_large = false, m_compact = false;
};
