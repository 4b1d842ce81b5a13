#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>

class QDialog;
class QWidget;

/// A form's wish for the dialogs that lie on it: what of it stays in sight. Dialogs of such a form belong to
/// it: they have no frame of the window manager, so nobody minimises or loses them, and they lie where they
/// cover as little as possible of what is told here.
///
///     new DialogPlace(this, [this] { return QList<QRect>{total(), lastLines()}; });
class DialogPlace : public QObject {
    Q_OBJECT

  public:
    /// Places on the screen, the most important first.
    using InSight = std::function<QList<QRect>()>;
    DialogPlace(QWidget* form, InSight inSight);

    /// Prepares a dialog that is about to be shown: no way to minimise it, and its place, when it lies on a
    /// form with a wish. To be called before the dialog is visible.
    static void prepare(QDialog& dialog);

  private:
    const QWidget& m_form;
    const InSight m_inSight;
};

/// Where a dialog of this size lies best: inside `area`, in the middle of it as far as possible, covering
/// none of `inSight`; when there is no room for that, the least important give way.
[[nodiscard]] QPoint PlaceDialog(const QSize& dialog, const QRect& area, QList<QRect> inSight);
