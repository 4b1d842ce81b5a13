#include <ui/Notice.h>
#include <ui/Theme.h>

#include <QAccessible>
#include <QLabel>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int shownMs = 5000;

QLabel* lineOf(const QWidget& window) {
    return window.findChild<QLabel*>(u"lblNotice"_s, Qt::FindDirectChildrenOnly);
}

QLabel* makeLine(QWidget& window) {
    auto* line = new QLabel(&window);
    line->setObjectName(u"lblNotice"_s);
    line->setAttribute(Qt::WA_TransparentForMouseEvents);
    line->setAlignment(Qt::AlignCenter);
    line->setWordWrap(true);
    auto* end = new QTimer(line);
    end->setSingleShot(true);
    end->setInterval(shownMs);
    QObject::connect(end, &QTimer::timeout, line, &QLabel::hide);
    return line;
}

} // namespace

void ShowNotice(QWidget& window, const QString& text) {
    QLabel* line = lineOf(window);
    if (line == nullptr) line = makeLine(window);
    const Theme& theme = Theme::Current();
    line->setStyleSheet(u"QLabel { background: %1; color: %2; font-weight: 700; padding: %3px; }"_s.arg(
        theme.warning.name(), Theme::Readable(Qt::white, theme.warning).name(), QString::number(theme.gap)));
    line->setText(text);
    line->setAccessibleName(text);
    line->ensurePolished(); // without its font it would not know its height
    line->setGeometry(0, 0, window.width(),
                      std::max(line->heightForWidth(window.width()), theme.keyHeight * 2 / 3));
    line->raise();
    line->show();
    line->findChild<QTimer*>()->start();
    QAccessibleEvent alert(line, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void HideNotice(const QWidget& window) {
    if (QLabel* line = lineOf(window)) line->hide();
}

QString NoticeText(const QWidget& window) {
    const QLabel* line = lineOf(window);
    return line != nullptr && line->isVisible() ? line->text() : QString();
}
