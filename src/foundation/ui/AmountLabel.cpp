#include <ui/AmountLabel.h>
#include <ui/Theme.h>

#include <QEvent>
#include <QLineEdit>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int smallestLetters = 8;

/// Keeps the letters of one box fitting.
class LetterFitter : public QObject {
  public:
    explicit LetterFitter(QLineEdit& box)
        : QObject(&box)
        , m_box(box) {
        box.installEventFilter(this);
        connect(&box, &QLineEdit::textChanged, this, [this] { fit(); });
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Show) fit();
        return QObject::eventFilter(watched, event);
    }

  private:
    void fit() {
        if (!m_box.isVisible()) return;
        if (m_largest == 0) m_largest = m_box.font().pixelSize();
        // What the frame, the padding of the style sheet and the cursor take.
        constexpr int aside = 2 * (2 + 10) + 8;
        QFont font = m_box.font();
        font.setPixelSize(m_largest);
        const int size = FittedFont(font, m_box.text(), {m_box.width() - aside, 0}).pixelSize();
        if (size == m_box.font().pixelSize()) return;
        m_box.setStyleSheet(size == m_largest ? QString() : u"QLineEdit { font-size: %1px; }"_s.arg(size));
    }
    QLineEdit& m_box;
    int m_largest = 0;
};

} // namespace

QFont FittedFont(QFont font, const QString& text, const QSize& room) {
    const auto fits = [&] {
        const QFontMetrics fm(font);
        // The ascent: nothing that an amount is written with hangs below the line by more than a comma.
        return (room.width() <= 0 || fm.horizontalAdvance(text) <= room.width()) &&
               (room.height() <= 0 || fm.ascent() <= room.height());
    };
    while (font.pixelSize() > smallestLetters && !fits())
        font.setPixelSize(font.pixelSize() - 1);
    return font;
}

void FitLetters(QLineEdit& box) { new LetterFitter(box); }

AmountLabel::AmountLabel(QWidget* parent)
    : QLabel(parent) {
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

QFont AmountLabel::shownFont() const { return FittedFont(font(), text(), contentsRect().size()); }

QSize AmountLabel::sizeHint() const { return {0, fontMetrics().height()}; }

QSize AmountLabel::minimumSizeHint() const {
    return {0, std::min(fontMetrics().height(), Theme::Current().large * 5 / 4)};
}

void AmountLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(shownFont());
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(contentsRect(), int(alignment()) | Qt::TextSingleLine | Qt::TextDontClip, text());
}
