#pragma once

#include "Script.h"

#include <session/Clock.h>
#include <text/Currency.h>
#include <ui/ScanGuard.h>
#include <ui/TouchDialogs.h>

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTextStream>

#include <map>
#include <vector>

namespace play {

class ReceiptPrinter;

/// The message boxes of production; what they say is noted for the script to compare.
class NotingHost : public TouchDialogHost {
  public:
    MsgAnswer msgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title,
                     MsgAnswer preset) override;
    QString text; ///< of the box on the screen, "" when there is none
};

/// Plays a script through the real forms. The steps run from the event loop, also from that of a dialog that
/// an earlier step opened; a step waits until the one before has been worked off or has opened a window.
class Player : public QObject {
    Q_OBJECT
  public:
    /// Writes morning.log, receipts and pictures into `folder`, which must exist. Raises 70 otherwise.
    /// `scans` acts on the step "scan" alone; all else is typed.
    Player(QList<Step> steps, ReceiptPrinter& printer, ScanGuard& scans, QString folder,
           QObject* parent = nullptr);
    ~Player() override;

    void start();
    void note(const QString& text);       ///< a line in the log
    [[nodiscard]] QString report() const; ///< the log so far

  signals:
    void finished(bool failed);

  private:
    enum class Result { Done, Wait };
    struct Failure {
        QString what;
    };
    void tick();
    void next();
    Result play(const Step& step);
    Result answerBox(const QString& answer, const QString& text);
    Result checkBooked(const QString& art, const QString& total);
    Result checkReceipt(const QString& text);
    Result checkPage(const QString& name);
    Result checkLines(const QString& count);
    void checkStock(const QString& number, const QString& amount);
    void checkValue(const QString& value, const QString& sql);
    void checkEnd();
    [[nodiscard]] QWidget& control(const QString& name) const;
    void setClock(const QString& time);
    void savePicture(const QString& name);
    void finish(const QString& failure);
    /// Where the next receipt goes, without the ending.
    [[nodiscard]] QString nextReceiptFile();
    /// Files of the PDF printer that no step has asked for, in the order of their names.
    [[nodiscard]] QStringList newPages() const;

    const QList<Step> m_steps;
    ReceiptPrinter& m_printer;
    ScanGuard& m_scans;
    const QString m_folder;
    QFile m_logFile;
    QTextStream m_log;
    NotingHost m_host;
    DialogHost* m_hostBefore = nullptr;
    qsizetype m_next = 0;
    std::vector<QWidget*> m_running; ///< front windows when the steps still on the stack began
    QElapsedTimer m_waiting, m_sinceClock;
    QDateTime m_clock;
    int m_lastReceipt = 0, m_bookings = 0, m_receipts = 0, m_pictures = 0;
    Currency m_total;
    std::map<QString, std::pair<int, Currency>> m_perKind;
    QStringList m_report, m_pages;
    bool m_over = false;
};

} // namespace play
