#pragma once

#include <page/PageDocument.h>
#include <page/ui/PagePreview.h>

#include <QAbstractScrollArea>

/// The pages of a document, one below the other, on a surface that scrolls.
class PageView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit PageView(QWidget* parent = nullptr);

    void setDocument(PageDocument document);
    [[nodiscard]] const PageDocument& document() const { return m_document; }
    [[nodiscard]] int currentPage() const { return m_current; }
    void showPage(int page);
    [[nodiscard]] double zoom() const { return m_zoom; }
    /// What is under `anchor`, in pixels of the viewport, stays there.
    void setZoom(double zoom, QPoint anchor);
    [[nodiscard]] PagePreview::Fit fit() const { return m_fit; }
    void setFit(PagePreview::Fit fit);
    /// Where a page is in the viewport.
    [[nodiscard]] QRect pageRect(int page) const;

  signals:
    void changed(); ///< the document, the page that is shown, or the zoom

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// A point of the document.
    struct Spot {
        int page = 0;
        QPointF twips; ///< may lie beside the page
    };
    [[nodiscard]] Spot spotAt(QPoint point) const;
    void scrollTo(const Spot& spot, QPoint point);
    [[nodiscard]] double pixelsPerTwip() const;
    [[nodiscard]] double fittingZoom() const;
    void applyZoom(double zoom, QPoint anchor);
    void arrange();
    void noticePage();

    PageDocument m_document;
    PagePreview::Fit m_fit = PagePreview::Fit::Width;
    double m_zoom = 1;
    std::vector<QRect> m_places; ///< of the pages on the whole surface
    int m_current = -1;
    bool m_arranging = false;
};
