#pragma once

#include <ui/Form.h>

#include <QColor>
#include <QPixmap>

#include <array>

class QFrame;
class QLabel;
class TouchKey;

/// A page of a wizard, or the head of a dialog: a band with what the page is about in one line and what to do
/// in a second, or a face that welcomes, with a picture at the left. The layout of what a page holds keeps
/// clear of both, so in Designer a page is filled like any frame. Without a layout of its own it is as high
/// as its band.
class WizardPane : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString HeaderTitle READ headerTitle WRITE setHeaderTitle)
    Q_PROPERTY(QString HeaderDescription READ headerDescription WRITE setHeaderDescription)
    Q_PROPERTY(bool ShowHeader READ showHeader WRITE setShowHeader)
    Q_PROPERTY(QColor BackColor READ backColor WRITE setBackColor)
    Q_PROPERTY(QColor ForeColor READ foreColor WRITE setForeColor)
    Q_PROPERTY(QColor HeaderBackColor READ headerBackColor WRITE setHeaderBackColor)
    Q_PROPERTY(QPixmap WelcomePicture READ welcomePicture WRITE setWelcomePicture)
    Q_PROPERTY(QPixmap HeaderPicture READ headerPicture WRITE setHeaderPicture)
    Q_PROPERTY(int PaneNumber READ paneNumber WRITE setPaneNumber)
    Q_PROPERTY(qulonglong hWnd READ hWnd)

  public:
    explicit WizardPane(QWidget* parent = nullptr);
    [[nodiscard]] QString headerTitle() const;
    void setHeaderTitle(const QString& text);
    [[nodiscard]] QString headerDescription() const;
    void setHeaderDescription(const QString& text);
    [[nodiscard]] bool showHeader() const { return m_showHeader; }
    void setShowHeader(bool header); ///< false: the welcome face
    // Colours are those of the theme as long as none is set.
    [[nodiscard]] QColor backColor() const { return m_back; }
    void setBackColor(const QColor& colour);
    [[nodiscard]] QColor foreColor() const { return m_fore; }
    void setForeColor(const QColor& colour); ///< of what stands on the band
    [[nodiscard]] QColor headerBackColor() const { return m_headerBack; }
    void setHeaderBackColor(const QColor& colour);
    [[nodiscard]] QPixmap welcomePicture() const { return m_welcomePicture; }
    void setWelcomePicture(const QPixmap& picture);
    /// Puts a control at the right end of the header.
    void addToHeader(QWidget* control);
    [[nodiscard]] QPixmap headerPicture() const;
    void setHeaderPicture(const QPixmap& picture);
    /// The place of the page in its wizard: the number that its object name ends in, unless one was set.
    [[nodiscard]] int paneNumber() const;
    void setPaneNumber(int number) { m_number = number; }
    [[nodiscard]] qulonglong hWnd() const { return effectiveWinId(); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return layout() == nullptr; }
    [[nodiscard]] int heightForWidth(int width) const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void place();
    [[nodiscard]] QSize bandSize() const;
    [[nodiscard]] int faceWidth() const; ///< of the picture's side of the welcome face

    QWidget *m_header, *m_welcome;
    QLabel *m_headerLogo, *m_title, *m_description, *m_welcomeTitle, *m_welcomeDescription;
    QPixmap m_welcomePicture;
    QColor m_back, m_fore, m_headerBack;
    bool m_showHeader = true;
    int m_number = -1;
};

/// The bar at the foot of a wizard: back, next, finish, cancel. It finds the pages among its parent's
/// controls by their name ("wizPane", or "wizPane0", "wizPane1", ...) and shows one of them. It knows nothing
/// of the job and never moves by itself: the form answers to its signals and calls NextPane, PreviousPane,
/// Finished.
///
/// Pages and bar that no layout holds are placed by the bar: itself at the foot, the pages above it.
class WizardCtl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ backColor WRITE setBackColor)
    Q_PROPERTY(QString PaneName READ paneName WRITE setPaneName)
    Q_PROPERTY(int Panes READ panes)
    Q_PROPERTY(int PaneNumber READ paneNumber WRITE setPaneNumber)

  public:
    explicit WizardCtl(QWidget* parent = nullptr);

    [[nodiscard]] QColor backColor() const { return m_backColor; }
    void setBackColor(const QColor& colour);
    [[nodiscard]] QString paneName() const { return m_paneName; }
    void setPaneName(const QString& name);
    [[nodiscard]] int panes() const; ///< how many pages of that name there are
    [[nodiscard]] int paneNumber() const { return m_pane; }
    void setPaneNumber(int number); ///< shows that page and hides the others; keys stay as they are
    /// The page that is shown; nullptr for a number without one.
    [[nodiscard]] QWidget* pane() const;
    /// The key that goes on: finish, else next; nullptr when both are off.
    [[nodiscard]] TouchKey* forwardKey() const;
    [[nodiscard]] TouchKey* cancelKey() const { return m_cancel; }

    void Error();               ///< nothing is left but to cancel
    void Finished();            ///< cancel becomes close, and is on
    void InProgress(bool flag); ///< all keys off; and as they were
    void NextPane();
    void PreviousPane();

  signals:
    void NextClick(int Pane);
    void BackClick(int Pane);
    void CancelClick();
    /// All keys are off by then; the form switches on what it needs.
    void FinishClick();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] QList<QWidget*> ownPanes() const;
    [[nodiscard]] bool isLaidOut(QWidget* control) const;
    void place();
    void markForward();

    QFrame* m_line;
    QLabel* m_logo;
    TouchKey *m_back, *m_next, *m_finish, *m_cancel;
    std::array<bool, 4> m_before{true, true, true, true};
    QColor m_backColor;
    QString m_paneName = QStringLiteral("wizPane");
    int m_pane = 0;
};

/// A dialog around a WizardCtl named `mainWizard`: Enter goes on, Esc cancels. A wizard tells what each page
/// demands and what is done at the end.
class WizardForm : public FormDialog {
    Q_OBJECT

  public:
    using FormDialog::FormDialog;

  protected:
    void setUpWizard(); ///< behind setupUi
    /// The page may be left to the next one; what it lacks has been told otherwise.
    [[nodiscard]] virtual bool mayLeave(int pane) = 0;
    /// The page is shown: focus, contents.
    virtual void entered(int pane) = 0;
    /// The job. What it raises is reported, and nothing is left but to cancel.
    virtual void finish() = 0;
    [[nodiscard]] WizardCtl& wizard() { return *m_wizard; }
    void ok() final {}

    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void arrive();
    WizardCtl* m_wizard = nullptr;
};
