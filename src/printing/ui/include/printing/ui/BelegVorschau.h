#pragma once

#include <printing/Seiten.h>

#include <QTimer>
#include <QWidget>

#include <functional>

class PagePreview;
class QLabel;

/// The page of a booked document beside a list of them, or why there is none to see. Whoever runs down the
/// list with the arrow keys sees the document at which he stops; those on the way are not laid out.
///
///     connect(list, &ListView::currentKeyChanged, this, [this](const QString& key) {
///         m_ui->vorschau->showPages([id = GetKeyID(key, 2)] { return BonSeiten(id); });
///     });
class BelegVorschau : public QWidget {
    Q_OBJECT

  public:
    explicit BelegVorschau(QWidget* parent = nullptr);

    /// Lays out soon; what `layOut` raises is shown in place of the page.
    void showPages(std::function<BelegSeiten()> layOut);
    void clear();
    [[nodiscard]] PagePreview& preview() const { return *m_preview; }

  private:
    void layOutNow();
    void tell(const QString& text);

    PagePreview* m_preview;
    QLabel* m_fault; ///< lblVorschau
    QTimer m_rest;
    std::function<BelegSeiten()> m_layOut;
};
