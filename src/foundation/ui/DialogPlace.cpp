#include <ui/DialogPlace.h>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLayout>
#include <QTimer>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr int margin = 6; ///< between a dialog and what it leaves free
constexpr int frame = 2;  ///< of a dialog, by the style sheet

/// Keeps one dialog at its place, whatever size it takes, and in sight.
class Placer : public QObject {
  public:
    Placer(QDialog& dialog, std::function<QPoint(const QSize&)> place)
        : QObject(&dialog)
        , m_dialog(dialog)
        , m_place(std::move(place)) {
        dialog.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show || event->type() == QEvent::Resize)
            m_dialog.move(m_place(m_dialog.size()));
        // A key of the window manager may do what no button offers; the form behind would be dead.
        if (event->type() == QEvent::WindowStateChange && m_dialog.isMinimized())
            QTimer::singleShot(0, &m_dialog, &QWidget::showNormal);
        return QObject::eventFilter(watched, event);
    }

  private:
    QDialog& m_dialog;
    const std::function<QPoint(const QSize&)> m_place;
};

/// The wish of the form that the dialog lies on, perhaps below other dialogs. Without a window manager no
/// window may be the active one, and a box then has no parent: the form on the screen is meant.
const DialogPlace* wishOf(const QDialog& dialog) {
    const auto wish = [](const QWidget* form) {
        return form->findChild<DialogPlace*>(QString(), Qt::FindDirectChildrenOnly);
    };
    for (const QWidget* below = dialog.parentWidget(); below != nullptr; below = below->parentWidget()) {
        if (const DialogPlace* found = wish(below)) return found;
    }
    if (dialog.parentWidget() != nullptr) return nullptr;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) continue;
        if (const DialogPlace* found = wish(window)) return found;
    }
    return nullptr;
}

} // namespace

DialogPlace::DialogPlace(QWidget* form, InSight inSight)
    : QObject(form)
    , m_form(*form)
    , m_inSight(std::move(inSight)) {}

void DialogPlace::prepare(QDialog& dialog) {
    const DialogPlace* wish = wishOf(dialog);
    const Qt::WindowFlags own = dialog.windowFlags() & ~Qt::WindowFlags(Qt::WindowMinMaxButtonsHint);
    if (wish == nullptr) {
        dialog.setWindowFlags(own | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                              Qt::WindowCloseButtonHint);
        return;
    }
    // A hint of a button would bring the frame back.
    dialog.setWindowFlags((own & Qt::WindowType_Mask) | Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
    // The frame that the style sheet draws stays free.
    if (QLayout* layout = dialog.layout()) {
        const QMargins now = layout->contentsMargins();
        layout->setContentsMargins(std::max(now.left(), frame), std::max(now.top(), frame),
                                   std::max(now.right(), frame), std::max(now.bottom(), frame));
    }
    new Placer(dialog, [wish](const QSize& size) {
        return PlaceDialog(size, wish->m_form.geometry(), wish->m_inSight());
    });
}

QPoint PlaceDialog(const QSize& dialog, const QRect& area, QList<QRect> inSight) {
    const QPoint middle = area.center() - QRect(QPoint(), dialog).center();
    const QPoint last(std::max(area.left(), area.right() + 1 - dialog.width()),
                      std::max(area.top(), area.bottom() + 1 - dialog.height()));
    for (;; inSight.removeLast()) {
        // The best place touches an edge of something, if it is not the middle itself.
        QList<int> across{middle.x(), area.left(), last.x()}, down{middle.y(), area.top(), last.y()};
        for (const QRect& kept : inSight) {
            across << kept.right() + 1 + margin << kept.left() - margin - dialog.width();
            down << kept.bottom() + 1 + margin << kept.top() - margin - dialog.height();
        }
        std::optional<QPoint> best;
        const auto distance = [&](const QPoint& at) {
            const QPoint off = at - middle;
            return off.x() * off.x() + off.y() * off.y();
        };
        for (const int x : across) {
            for (const int y : down) {
                const QPoint at(std::clamp(x, area.left(), last.x()), std::clamp(y, area.top(), last.y()));
                const bool free = std::none_of(inSight.begin(), inSight.end(), [&](const QRect& kept) {
                    return kept.intersects(QRect(at, dialog));
                });
                if (free && (!best || distance(at) < distance(*best))) best = at;
            }
        }
        if (best || inSight.isEmpty()) return best.value_or(area.topLeft());
    }
}
