#pragma once

#include <ui/ScanRecogniser.h>

#include <QDialog>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

/// How a form gets the end of a scan.
enum class ScanEnd {
    AsSent, ///< Enter or Tab, as the scanner sends it
    Enter   ///< always Enter
};
/// Declares a box that waits for a code (search, PIN, serial number), or a form that takes codes wherever its
/// focus is. In a .ui file the property "takesScan" of a box does the same.
void TakeScans(QWidget& box, ScanEnd end = ScanEnd::AsSent);
/// Declares a dialog at which the next customer's goods may be scanned already: a scan gives it `answer`,
/// which must do no harm and close it, and then goes to the form that the dialog belongs to.
void AnswerScans(QDialog& dialog, std::function<void()> answer);
/// What the window says to a scan that it cannot take, in place of "Bitte erst die Frage beantworten".
void SetScanNotice(QWidget& window, const QString& text);

/// Keeps scans from doing harm wherever they land. Unless a box or form has declared that it takes them, a
/// scan presses and enters nothing in any window of the program: a sound and a line in the window tell it.
/// Keys that may be the beginning of one are held back for the time of ScanFigures::gap and come out in their
/// order when they were typed.
///
/// It acts while it lives and is enabled; the program has one. Only keys from outside are looked at, not
/// those that the program sends itself (DigitPad).
class ScanGuard : public QObject {
    Q_OBJECT

  public:
    /// Without figures those of konfig.ini count, read anew for each scan.
    explicit ScanGuard(QObject* parent = nullptr);
    explicit ScanGuard(const ScanFigures& figures, QObject* parent = nullptr);
    ~ScanGuard() override;

    /// The one that lives, or nullptr.
    [[nodiscard]] static ScanGuard* Current();
    /// Switched off it lets everything through at once.
    void setEnabled(bool on);
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    /// The clock for keys without a time stamp of the system and for the end of a wait; milliseconds.
    void setClock(std::function<qint64()> clock);
    /// Decides by the clock whether what is held back was typed. Runs by itself while keys are held.
    void settle();

    /// For those that swallow all keys themselves: a scan among them is told in `window`.
    void watch(const QKeyEvent& key, QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    enum class Place { Refuses, Takes, TakesEnter, Answers };
    /// Keys whose window has gone.
    enum class Orphans { Later, ToWhatIsActive };
    struct Key {
        QPointer<QWidget> receiver;
        bool hadFocus;
        std::unique_ptr<QKeyEvent> event;
    };
    struct Seen {
        const QEvent* event = nullptr;
        QEvent::Type type = QEvent::None;
        int key = 0;
        quint64 stamp = 0;
        QPointer<const QWidget> by;
    };

    [[nodiscard]] static Place placeOf(const QWidget& receiver);
    [[nodiscard]] static QWidget* targetOf(const Key& key);
    [[nodiscard]] static Key copy(QWidget& receiver, const QKeyEvent& key);
    [[nodiscard]] bool isAgain(const QWidget& receiver, const QKeyEvent& key);
    [[nodiscard]] qint64 timeOf(const QKeyEvent& key);
    [[nodiscard]] qint64 now() const;
    [[nodiscard]] ScanRecogniser::Verdict judge(const QKeyEvent& key);

    // True when the event goes no further
    [[nodiscard]] bool pressed(QWidget& receiver, const QKeyEvent& key);
    [[nodiscard]] bool released(QWidget& receiver, const QKeyEvent& key);
    [[nodiscard]] bool scanned(QWidget& receiver, const QKeyEvent& key, Place place);
    [[nodiscard]] bool pass(QWidget& receiver, const QKeyEvent& key);
    /// False when the window belongs to no form that takes scans.
    [[nodiscard]] bool answered(QWidget& window, const QString& code);

    void hold(QWidget& receiver, const QKeyEvent& key);
    void waitForMore();
    void forget();  ///< whatever is under way was typed
    void letGo();   ///< what is held was typed
    void swallow(); ///< what is held was a scan
    void deliver(Orphans orphans);
    void refuse(QWidget& window);

    bool m_enabled = true;
    std::optional<ScanFigures> m_fixed;
    ScanRecogniser m_scans;
    std::function<qint64()> m_clock;
    QElapsedTimer m_elapsed;
    qint64 m_time = 0, m_lastClock = 0; ///< of the last key
    quint64 m_lastStamp = 0;
    std::deque<Key> m_held, m_outbox;
    QSet<int> m_swallowed; ///< keys whose press was swallowed and that have not come up yet
    Seen m_seen;
    QPointer<QWidget> m_told; ///< where the last refused scan was told
    QTimer m_wait, m_rest;
    bool m_lastTurn = false;
};
