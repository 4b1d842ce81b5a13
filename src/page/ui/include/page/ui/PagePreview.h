#pragma once

#include <page/PageDocument.h>

#include <QWidget>

class PageView;
class QLabel;
class TouchKey;

/// Shows a document as it prints, with keys for pages and zoom. Put it into a form or a dialog:
///
///     preview->setDocument(printer.Document());
///
/// PgUp, PgDn, Home and End leaf through the pages, Ctrl with + and - or the wheel zooms, Ctrl+0 shows the
/// natural size, Ctrl+1 the width of a page, Ctrl+2 a whole page; all while the preview has the focus.
class PagePreview : public QWidget {
    Q_OBJECT

  public:
    enum class Fit { None, Width, Page };

    explicit PagePreview(QWidget* parent = nullptr);

    /// Zoom and place stay, as far as the new document reaches.
    void setDocument(PageDocument document);
    [[nodiscard]] const PageDocument& document() const;

    /// Counts from 0; -1 without a page.
    [[nodiscard]] int currentPage() const;
    /// A page beyond the ends is the first or the last.
    void showPage(int page);

    /// 1 is the natural size on this screen; what is out of bounds is brought to them. Ends a fit.
    [[nodiscard]] double zoom() const;
    void setZoom(double zoom);
    static constexpr double leastZoom = 0.05, mostZoom = 8;
    /// Keeps the zoom at what fits, whatever size the preview takes; Width at the start.
    [[nodiscard]] Fit fit() const;
    void setFit(Fit fit);

    /// The keys for pages and zoom above the page; shown at the start.
    void showKeys(bool shown);

  signals:
    void pageChanged(int page);
    void zoomChanged(double zoom);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    TouchKey* addKey(const QString& name, const QString& caption, const QString& hint, const QString& tip,
                     void (PagePreview::*act)());
    void previousPage();
    void nextPage();
    void zoomIn();
    void zoomOut();
    void naturalSize();
    void fitWidth();
    void fitPage();
    void showState();

    PageView* m_view;
    QWidget* m_bar;
    TouchKey *m_previous, *m_next, *m_natural, *m_width, *m_whole;
    QLabel *m_pageLabel, *m_zoomLabel;
    int m_toldPage = -1;
    double m_toldZoom = 0;
};
