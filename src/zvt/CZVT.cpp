#include "TerminalSession.h"

#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/ShopFiles.h>
#include <text/Convert.h>
#include <text/Format.h>
#include <text/RuntimeError.h>
#include <zvt/CZVT.h>
#include <zvt/protocol/Fields.h>

#include <QScopedValueRollback>

#include <optional>

using namespace Qt::StringLiterals;
using zvt::TerminalSession;

namespace {

constexpr int authorisation = 0x0601, reversal = 0x0630, refund = 0x0631, endOfDay = 0x0650;
constexpr int amountField = 0x04, currencyField = 0x49, receiptField = 0x87;
constexpr qint64 scaledPerCent = 100;
constexpr qint64 largestCents = 999'999'999'999;
constexpr auto title = u"EC - Terminal...";

QString titleText() { return QString::fromUtf16(title); }
QString centsText(qint64 cents) {
    return Format(Value(Currency::fromScaled(cents * scaledPerCent)), u"#,##0.00") + u" €"_s;
}
void tell(const QString& text, MsgIcon icon = MsgIcon::Exclamation) {
    MsgBox(text, icon, MsgButtons::OK, titleText());
}

/// Half a cent goes to the even one; nothing for what a terminal does not take.
std::optional<qint64> toCents(Currency amount) {
    const qint64 scaled = amount.scaled();
    if (scaled <= 0) return {};
    qint64 cents = scaled / scaledPerCent;
    const qint64 rest = scaled % scaledPerCent;
    if (rest * 2 > scaledPerCent || (rest * 2 == scaledPerCent && cents % 2)) ++cents;
    if (cents < 1 || cents > largestCents) return {};
    return cents;
}

QByteArray field(int number, const QByteArray& value) { return static_cast<char>(number) + value; }
QByteArray amountFields(qint64 cents) {
    return field(amountField, zvt::bcd(cents, 6)) + field(currencyField, zvt::bcd(zvt::euro, 2));
}

} // namespace

/// The acts as the cashier sees them: what is shown, asked and told.
class CZVT::Cashier {
  public:
    Cashier(const zvt::TerminalConfig& config, WaitScreen& screen, Print print)
        : session(config)
        , m_screen(screen)
        , m_print(std::move(print)) {}

    bool pay(Currency amount);
    void reverse();
    void giveBack();
    void close();

    /// One act at a time: events run while the terminal works.
    template <typename Act>
    auto exclusively(Act&& act) -> decltype(act()) {
        if (m_busy) {
            tell(u"Das Kartenterminal ist noch beschäftigt."_s);
            return decltype(act())();
        }
        const QScopedValueRollback busy(m_busy, true);
        return act();
    }

    TerminalSession session;
    QString cardName;

  private:
    using Outcome = TerminalSession::Outcome;
    Outcome run(const QString& what, const zvt::Apdu& command, std::optional<qint64> amount);
    /// True when the act was booked; everything else is told. `what` begins a sentence.
    bool report(Outcome outcome, const QString& what, std::optional<qint64> amount);
    void tellUnknown(const QString& what, std::optional<qint64> amount);
    void printLines();
    enum class Earlier { Settled, Paid, Stop };
    Earlier settleEarlier(std::optional<qint64> amount);

    WaitScreen& m_screen;
    Print m_print;
    bool m_busy = false;
    std::optional<qint64> m_lastAmount;
    QString m_lastReceipt;
};

CZVT::Cashier::Outcome CZVT::Cashier::run(const QString& what, const zvt::Apdu& command,
                                          std::optional<qint64> amount) {
    QString head = what;
    if (amount) head += u": "_s + centsText(*amount);
    m_screen.Begin(head, u"Verbindung zum Kartenterminal..."_s);
    const Outcome outcome = session.act(command, amount, m_screen);
    m_screen.End();
    printLines();
    return outcome;
}

void CZVT::Cashier::printLines() {
    const QStringList lines = session.takeLines();
    if (lines.isEmpty() || !m_print) return;
    try {
        m_print(lines);
    } catch (const RuntimeError& error) {
        tell(u"Der Beleg des Kartenterminals konnte nicht gedruckt werden: "_s + error.Description +
             u"\n\nDrucken Sie ihn am Terminal noch einmal."_s);
    }
}

void CZVT::Cashier::tellUnknown(const QString& what, std::optional<qint64> amount) {
    QString text = u"ACHTUNG: Der Ausgang ist unbekannt!\n\n"_s + what;
    if (amount) text += u" über "_s + centsText(*amount);
    text +=
        u": Die Verbindung zum Kartenterminal ist unterbrochen, und das Terminal konnte nicht sagen, ob der "
        u"Vorgang ausgeführt wurde.\n\nEs wurde nichts gebucht. Prüfen Sie den letzten Beleg am Terminal, bevor "
        u"Sie den Betrag noch einmal verlangen."_s;
    tell(text, MsgIcon::Critical);
}

bool CZVT::Cashier::report(Outcome outcome, const QString& what, std::optional<qint64> amount) {
    switch (outcome) {
    case Outcome::Booked:
        return true;
    case Outcome::Failed:
        if (!session.wasCancelled()) tell(what + u" wurde nicht ausgeführt.\n\n"_s + session.reason());
        return false;
    case Outcome::WrongStatus: {
        const auto& wrong = session.wrong();
        const QString told = wrong.amount ? centsText(*wrong.amount) : u"einen unlesbaren Betrag"_s;
        tell(what + u" gilt nicht: Das Kartenterminal meldet "_s + told + u" statt "_s +
                 centsText(amount.value_or(0)) +
                 (wrong.currency.value_or(zvt::euro) != zvt::euro ? u", in fremder Währung"_s : QString()) +
                 u".\n\nEs wurde nichts gebucht, das Terminal wurde aufgefordert, den Vorgang "
                 u"zurückzunehmen. Prüfen Sie den letzten Beleg am Terminal."_s,
             MsgIcon::Critical);
        return false;
    }
    case Outcome::Unknown:
        tellUnknown(what, amount);
        return false;
    }
    return false;
}

CZVT::Cashier::Earlier CZVT::Cashier::settleEarlier(std::optional<qint64> amount) {
    if (!session.unsettled()) return Earlier::Settled;
    const auto earlier = session.unsettled()->amount;
    const QString of = earlier ? u" über "_s + centsText(*earlier) : QString();
    m_screen.Begin(u"Ungeklärter Vorgang"_s + of, u"Verbindung zum Kartenterminal..."_s);
    const Outcome outcome = session.settle(m_screen);
    m_screen.End();
    if (outcome == Outcome::Failed) return Earlier::Settled;
    if (outcome == Outcome::Booked) {
        const bool same = amount && earlier == amount;
        tell(
            u"Der vorige, ungeklärte Vorgang am Kartenterminal"_s + of + u" wurde ausgeführt."_s +
                (same
                     ? u"\n\nDie Kundin oder der Kunde hat bezahlt, der Verkauf wird damit gebucht."_s
                     : u"\n\nEs wurde nichts Neues begonnen. Stornieren Sie den Vorgang am Terminal, wenn er nicht gelten soll."_s),
            MsgIcon::Information);
        return same ? Earlier::Paid : Earlier::Stop;
    }
    const MsgAnswer answer = MsgBox(
        u"Der Ausgang des vorigen Vorgangs am Kartenterminal"_s + of +
            u" ist noch immer unbekannt. Prüfen Sie den letzten Beleg am Terminal.\n\nMöchten Sie trotzdem "
            u"einen neuen Vorgang beginnen?"_s,
        MsgIcon::Question, MsgButtons::YesNo, titleText(), MsgAnswer::No);
    if (answer != MsgAnswer::Yes) return Earlier::Stop;
    session.forgetUnsettled();
    return Earlier::Settled;
}

bool CZVT::Cashier::pay(Currency amount) {
    cardName.clear();
    const auto cents = toCents(amount);
    if (!cents) {
        tell(u"Das Kartenterminal kann nur Beträge über 0,00 € buchen. Erstattungen gehen über "
             u"\"Gutschrift\" in den EC Terminal Funktionen."_s);
        return false;
    }
    const Earlier earlier = settleEarlier(cents);
    if (earlier == Earlier::Stop) return false;
    const bool paid =
        earlier == Earlier::Paid ||
        report(run(u"Kartenzahlung"_s, zvt::command(authorisation, amountFields(*cents)), cents),
               u"Die Kartenzahlung"_s, cents);
    if (!paid) return false;
    const zvt::StatusInfo& status = session.status();
    cardName = status.cardName.isEmpty() ? u"Karte"_s : status.cardName;
    m_lastAmount = cents;
    m_lastReceipt = status.receipt;
    return true;
}

void CZVT::Cashier::reverse() {
    if (settleEarlier({}) == Earlier::Stop) return;
    const auto typed =
        InputBox(u"Bitte geben Sie die Belegnummer der Kartenzahlung ein, die storniert werden soll."_s,
                 titleText(), m_lastReceipt);
    if (!typed) return;
    bool ok = false;
    const int receipt = typed->trimmed().toInt(&ok);
    if (!ok || receipt < 1 || receipt > 9999) {
        tell(u"Eine Belegnummer hat höchstens vier Ziffern."_s);
        return;
    }
    const bool isLast = m_lastAmount && receipt == m_lastReceipt.toInt();
    QByteArray data = session.config().password + field(receiptField, zvt::bcd(receipt, 2));
    const std::optional<qint64> amount = isLast ? m_lastAmount : std::nullopt;
    if (amount) data += amountFields(*amount);
    if (!report(run(u"Storno"_s, zvt::command(reversal, data), amount), u"Das Storno"_s, amount)) return;
    if (isLast) {
        m_lastAmount.reset();
        m_lastReceipt.clear();
    }
    tell(u"Die Kartenzahlung mit der Belegnummer "_s + QString::number(receipt) + u" wurde storniert."_s,
         MsgIcon::Information);
}

void CZVT::Cashier::giveBack() {
    if (settleEarlier({}) == Earlier::Stop) return;
    const auto typed = InputBox(
        u"Bitte geben Sie den Betrag ein, der auf die Karte gutgeschrieben werden soll."_s, titleText());
    if (!typed) return;
    const auto cents = IsNumeric(*typed) ? toCents(CCur(Value(*typed))) : std::nullopt;
    if (!cents) {
        tell(u"Das ist kein Betrag, der gutgeschrieben werden kann."_s);
        return;
    }
    const zvt::Apdu command = zvt::command(refund, session.config().password + amountFields(*cents));
    if (report(run(u"Gutschrift"_s, command, cents), u"Die Gutschrift"_s, cents))
        tell(u"Die Gutschrift über "_s + centsText(*cents) + u" wurde ausgeführt."_s, MsgIcon::Information);
}

void CZVT::Cashier::close() {
    if (settleEarlier({}) == Earlier::Stop) return;
    const zvt::Apdu command = zvt::command(endOfDay, session.config().password);
    if (!report(run(u"Kassenschnitt"_s, command, {}), u"Der Kassenschnitt des Kartenterminals"_s, {})) return;
    const auto total = session.status().amount;
    tell(u"Der Kassenschnitt des Kartenterminals wurde ausgeführt."_s +
             (total ? u"\n\nUmsatz: "_s + centsText(*total) : QString()),
         MsgIcon::Information);
}

CZVT::CZVT(const zvt::TerminalConfig& config, WaitScreen& screen, Print print)
    : m_cashier(std::make_unique<Cashier>(config, screen, std::move(print))) {}
CZVT::~CZVT() = default;

void CZVT::SetProtokoll(bool on) { m_cashier->session.log().enable(on); }
bool CZVT::FindTerminal() {
    return m_cashier->exclusively([this] { return m_cashier->session.find(); });
}
QString CZVT::Hersteller() const {
    const QString& device = m_cashier->session.info().device;
    return device.isEmpty() ? u"unbekannt"_s : device;
}
QString CZVT::Version() const {
    const QString& version = m_cashier->session.info().version;
    return version.isEmpty() ? u"unbekannt"_s : version;
}
bool CZVT::Bezahlen(Currency betrag) {
    return m_cashier->exclusively([&] { return m_cashier->pay(betrag); });
}
QString CZVT::KartenName() const { return m_cashier->cardName.left(LongestKarte); }
void CZVT::Storno() {
    m_cashier->exclusively([this] { m_cashier->reverse(); });
}
void CZVT::Gutschrift() {
    m_cashier->exclusively([this] { m_cashier->giveBack(); });
}
void CZVT::Kassenschnitt() {
    m_cashier->exclusively([this] { m_cashier->close(); });
}
