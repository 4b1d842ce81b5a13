#include "Player.h"

#include "ReceiptPrinter.h"
#include "Screen.h"

#include <devices/Printers.h>
#include <printing/Beleg.h>
#include <session/CSystem.h>
#include <session/Globals.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <store/SqlText.h>
#include <text/Convert.h>
#include <text/Format.h>
#include <text/RuntimeError.h>

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace play {

namespace {

constexpr int patience = 15000; ///< ms until a step that waits has failed
constexpr int pace = 5;         ///< ms between two looks

/// A Monday morning on which the demo's action prices are in force.
const QDateTime morning(QDate(2026, 11, 23), QTime(7, 55));

QString moneyText(Currency amount) { return Format(amount, u"##,##0.00"_s); }

void saveFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw RuntimeError(70, u"\"%1\": %2"_s.arg(path, file.errorString()), u"Player"_s);
    }
}

} // namespace

MsgAnswer NotingHost::msgBox(const QString& message, MsgButtons buttons, MsgIcon icon, const QString& title,
                             MsgAnswer preset) {
    const QString before = std::exchange(text, message);
    const MsgAnswer answer = TouchDialogHost::msgBox(message, buttons, icon, title, preset);
    text = before;
    return answer;
}

Player::Player(QList<Step> steps, ReceiptPrinter& printer, ScanGuard& scans, QString folder, QObject* parent)
    : QObject(parent)
    , m_steps(std::move(steps))
    , m_printer(printer)
    , m_scans(scans)
    , m_folder(std::move(folder))
    , m_logFile(m_folder + u"/morning.log"_s) {
    if (!m_logFile.open(QIODevice::WriteOnly | QIODevice::Text)) {
        throw RuntimeError(70, u"\"%1\": %2"_s.arg(m_logFile.fileName(), m_logFile.errorString()),
                           u"Player"_s);
    }
    m_log.setDevice(&m_logFile);
    m_hostBefore = SetDialogHost(&m_host);
    setClock(morning.time().toString(u"hh:mm"_s));
}

Player::~Player() {
    SetDialogHost(m_hostBefore);
    SetClock({});
}

void Player::start() {
    m_waiting.start();
    next();
}

void Player::next() { QTimer::singleShot(pace, this, &Player::tick); }

void Player::tick() {
    if (m_over) return;
    next();
    // The step before is still at work unless it opened a window, which then waits for what comes.
    if (!m_running.empty() && m_running.back() == screen::front()) {
        if (m_waiting.elapsed() > patience) finish(u"der Schritt davor wird nicht fertig."_s);
        return;
    }
    try {
        if (m_next == m_steps.size()) {
            checkEnd();
            finish({});
            return;
        }
        const qsizetype current = m_next++; // a window that the step opens goes on behind it
        m_running.push_back(screen::front());
        Result result = Result::Done;
        try {
            result = play(m_steps[current]);
        } catch (...) {
            m_next = current;
            m_running.pop_back();
            throw;
        }
        m_running.pop_back();
        if (result == Result::Done) {
            m_waiting.restart();
        } else {
            m_next = current;
        }
    } catch (const Failure& failure) {
        if (m_waiting.elapsed() > patience) finish(failure.what);
    } catch (const std::exception& error) {
        finish(QString::fromUtf8(error.what()));
    }
}

Player::Result Player::play(const Step& step) {
    const auto [first, rest] = firstWord(step.argument);
    QWidget* window = screen::front();
    // A script types without a pause, as no person does.
    m_scans.setEnabled(step.verb == u"scan"_s);
    if (step.verb == u"note"_s) {
        note(u"== "_s + step.argument);
    } else if (step.verb == u"clock"_s) {
        setClock(first);
    } else if (step.verb == u"window"_s) {
        if (window == nullptr || window->objectName() != first)
            throw Failure{u"das Fenster %1 erscheint nicht."_s.arg(first)};
    } else if (step.verb == u"scan"_s) {
        screen::typeText(step.argument);
        if (!screen::pressKey(u"Return"_s)) throw Failure{u"kein Fenster nimmt die Eingabe an."_s};
    } else if (step.verb == u"type"_s) {
        screen::typeText(step.argument);
    } else if (step.verb == u"key"_s) {
        if (!screen::pressKey(first)) throw Failure{u"die Taste %1 gibt es nicht."_s.arg(first)};
    } else if (step.verb == u"press"_s) {
        if (!screen::click(control(first))) throw Failure{first + u" ist gesperrt."_s};
    } else if (step.verb == u"choose"_s) {
        if (!screen::chooseItem(control(first), rest))
            throw Failure{u"%1 bietet \"%2\" nicht an."_s.arg(first, rest)};
    } else if (step.verb == u"menu"_s) {
        if (!screen::chooseMenu(step.argument))
            throw Failure{u"kein offenes Menü bietet \"%1\" an."_s.arg(step.argument)};
    } else if (step.verb == u"box"_s) {
        return answerBox(first, rest);
    } else if (step.verb == u"see"_s) {
        const QString text = screen::textOf(control(first));
        if (text != rest) throw Failure{u"%1 zeigt \"%2\" statt \"%3\"."_s.arg(first, text, rest)};
    } else if (step.verb == u"lines"_s) {
        return checkLines(first);
    } else if (step.verb == u"booked"_s) {
        return checkBooked(first, rest);
    } else if (step.verb == u"receipt"_s) {
        return checkReceipt(step.argument);
    } else if (step.verb == u"page"_s) {
        return checkPage(step.argument);
    } else if (step.verb == u"form"_s) {
        Print_Formular(m_lastReceipt, step.argument, 0, {});
    } else if (step.verb == u"stock"_s) {
        checkStock(first, rest);
    } else if (step.verb == u"query"_s) {
        checkValue(first, rest);
    } else if (step.verb == u"shot"_s) {
        savePicture(first);
    }
    return Result::Done;
}

QWidget& Player::control(const QString& name) const {
    QWidget* found = screen::find(screen::front(), name);
    if (found == nullptr) throw Failure{u"im Fenster vorn gibt es kein %1."_s.arg(name)};
    return *found;
}

Player::Result Player::answerBox(const QString& answer, const QString& text) {
    if (m_host.text.isEmpty() || !m_host.text.contains(text)) {
        throw Failure{u"statt der Meldung \"%1\" steht da: \"%2\"."_s.arg(text, m_host.text)};
    }
    static const std::map<QString, QString> keys{{u"OK"_s, u"cmdOK"_s},
                                                 {u"Abbrechen"_s, u"cmdCancel"_s},
                                                 {u"Ja"_s, u"cmdYes"_s},
                                                 {u"Nein"_s, u"cmdNo"_s},
                                                 {u"Wiederholen"_s, u"cmdRetry"_s}};
    const auto key = keys.find(answer);
    if (key == keys.end()) throw Failure{u"\"%1\" ist keine Antwort."_s.arg(answer)};
    QWidget& button = control(key->second);
    note(u"Meldung: %1 -> %2"_s.arg(QString(m_host.text).replace(u'\n', u' '), answer));
    if (!screen::click(button)) throw Failure{key->second + u" ist gesperrt."_s};
    return Result::Done;
}

Player::Result Player::checkLines(const QString& count) {
    const int open = sql::count(*gDB, u"Bestellung WHERE Maschine="_s + sql::text(gSystem->ComputerName()));
    if (open != CLng(count)) throw Failure{u"%1 Zeilen statt %2."_s.arg(open).arg(count)};
    return Result::Done;
}

Player::Result Player::checkBooked(const QString& art, const QString& total) {
    const auto rows = gDB->OpenRecordset(
        u"SELECT * FROM Rechnung WHERE RechnungID>%1 ORDER BY RechnungID ASC;"_s.arg(m_lastReceipt));
    if (rows->Eof()) throw Failure{u"es wurde nichts gebucht."_s};
    const int id = rows->Long(u"RechnungID");
    const QString bookedArt = rows->Text(u"ZahlArt");
    const Currency booked = rows->Money(u"Betrag_Gesamt");
    note(u"gebucht: Beleg %1, %2 %3, gegeben %4, zurück %5"_s.arg(id).arg(
        bookedArt, moneyText(booked), moneyText(rows->Money(u"Betrag_Gegeben")),
        moneyText(rows->Money(u"Betrag_Zurueck"))));
    if (bookedArt != art || booked != CCur(total)) {
        throw RuntimeError(
            5, u"gebucht wurden %1 %2 statt %3 %4."_s.arg(bookedArt, moneyText(booked), art, total));
    }
    m_lastReceipt = id;
    ++m_bookings;
    m_total += booked;
    auto& kind = m_perKind[bookedArt];
    ++kind.first;
    kind.second += booked;
    return Result::Done;
}

Player::Result Player::checkReceipt(const QString& text) {
    const auto bytes = m_printer.takeReceipt();
    if (!bytes) throw Failure{u"der Bondrucker bekommt keinen Beleg."_s};
    const QString name = nextReceiptFile();
    const QString paper = receiptText(*bytes);
    saveFile(name + u".bin"_s, *bytes);
    saveFile(name + u".txt"_s, paper.toUtf8());
    if (!paper.contains(text)) throw RuntimeError(5, u"auf dem Beleg fehlt \"%1\"."_s.arg(text));
    return Result::Done;
}

QString Player::nextReceiptFile() {
    return u"%1/beleg-%2"_s.arg(m_folder).arg(++m_receipts, 2, 10, QChar(u'0'));
}

QStringList Player::newPages() const {
    QStringList files = QDir(PdfFolder()).entryList({u"*.pdf"_s}, QDir::Files, QDir::Name);
    files.removeIf([this](const QString& file) { return m_pages.contains(file); });
    return files;
}

Player::Result Player::checkPage(const QString& name) {
    const QString file = newPages().value(0);
    if (file.isEmpty()) throw Failure{u"der PDF-Drucker bekommt keine Seite."_s};
    m_pages.append(file);
    if (!file.startsWith(name + u' '))
        throw RuntimeError(5, u"gedruckt wurde \"%1\" statt \"%2\"."_s.arg(file, name));
    note(u"gedruckt: "_s + file);
    const QString target = nextReceiptFile() + u".pdf"_s;
    if (!QFile::copy(PdfFolder() + file, target))
        throw RuntimeError(70, u"\"%1\" lässt sich nicht schreiben."_s.arg(target), u"Player"_s);
    return Result::Done;
}

void Player::checkStock(const QString& number, const QString& amount) {
    const auto rows =
        gDB->OpenRecordset(u"SELECT IstBestand FROM Artikel WHERE Nummer=%1;"_s.arg(sql::text(number)));
    if (rows->Eof()) throw RuntimeError(5, u"den Artikel %1 gibt es nicht."_s.arg(number));
    const QString stock = NumberText(rows->Number(u"IstBestand"));
    note(u"Bestand von %1: %2"_s.arg(number, stock));
    if (stock != amount)
        throw RuntimeError(5, u"der Bestand von %1 ist %2 statt %3."_s.arg(number, stock, amount));
}

void Player::checkValue(const QString& value, const QString& sql) {
    const auto rows = gDB->OpenRecordset(sql);
    const QString found = rows->Eof() ? u"nichts"_s : CStr(rows->Field(0)).remove(u' ');
    note(u"%1 -> %2"_s.arg(sql, found));
    if (found != value) throw RuntimeError(5, u"\"%1\" ergibt %2 statt %3."_s.arg(sql, found, value));
}

void Player::checkEnd() {
    if (!gDB->OpenRecordset(u"SELECT RechnungID FROM Rechnung WHERE RechnungID>%1;"_s.arg(m_lastReceipt))
             ->Eof()) {
        throw RuntimeError(5, u"es wurde mehr gebucht, als das Skript erwartet."_s);
    }
    if (!m_printer.pending().isEmpty() || !newPages().isEmpty())
        throw RuntimeError(5, u"es wurde mehr gedruckt, als das Skript erwartet."_s);
    if (!m_host.text.isEmpty()) throw RuntimeError(5, u"eine Meldung steht noch offen: "_s + m_host.text);
    note(u"== Summen"_s);
    for (const auto& [kind, sums] : m_perKind) {
        note(u"%1: %2 Belege, %3"_s.arg(kind).arg(sums.first).arg(moneyText(sums.second)));
    }
    note(u"zusammen: %1 Belege, %2, davon %3 gedruckt"_s.arg(m_bookings)
             .arg(moneyText(m_total))
             .arg(m_receipts));
}

void Player::setClock(const QString& time) {
    const QTime parsed = QTime::fromString(time, u"hh:mm"_s);
    if (!parsed.isValid()) throw RuntimeError(5, u"\"%1\" ist keine Uhrzeit."_s.arg(time));
    m_clock = QDateTime(morning.date(), parsed);
    m_sinceClock.start();
    SetClock([this] { return m_clock.addMSecs(m_sinceClock.elapsed()); });
}

void Player::savePicture(const QString& name) {
    const QString path = u"%1/bild-%2-%3.png"_s.arg(m_folder).arg(++m_pictures, 2, 10, QChar(u'0')).arg(name);
    if (!screen::picture().save(path))
        throw RuntimeError(70, u"\"%1\" lässt sich nicht schreiben."_s.arg(path));
}

void Player::note(const QString& text) {
    m_report.append(Now().toString(u"hh:mm:ss"_s) + u"  "_s + text);
    m_log << m_report.last() << u'\n';
    m_log.flush();
}

QString Player::report() const { return m_report.join(u'\n') + u'\n'; }

void Player::finish(const QString& failure) {
    m_over = true;
    const bool failed = !failure.isEmpty();
    if (failed) {
        const bool inScript = m_next < m_steps.size();
        note(u"FEHLER in %1: %2"_s.arg(
            inScript
                ? u"%1 (%2 %3)"_s.arg(m_steps[m_next].place(), m_steps[m_next].verb, m_steps[m_next].argument)
                : u"der Schlussprüfung"_s,
            failure));
        try {
            savePicture(u"fehler"_s);
        } catch (const RuntimeError& error) {
            note(error.Description);
        }
    }
    emit finished(failed);
}

} // namespace play
