#include "PostgresErrors.h"

#include "../Errors.h"

#include <store/ServerPatience.h>
#include <text/DetailedError.h>

#include <libpq-fe.h>
#include <new>

using namespace Qt::StringLiterals;

namespace store {

namespace {

QString field(const PGresult* result, int code) {
    const char* text = PQresultErrorField(result, code);
    return text ? QString::fromUtf8(text) : QString();
}

// The names of the checks are "size:Column" and "empty:Column"; see PostgresStructure.cpp.
[[noreturn]] void raiseCheck(const QString& constraint) {
    const QString column = constraint.mid(constraint.indexOf(u':') + 1);
    raise(constraint.startsWith(u"empty:") ? 3315 : 3163, column);
}

// "Key (\"Nummer\")=(4711) already exists": the columns are all that a person needs.
QString keyOf(const PGresult* result, const Counters& counters) {
    const QString detail = field(result, PG_DIAG_MESSAGE_DETAIL);
    const qsizetype open = detail.indexOf(u'(');
    const qsizetype close = detail.indexOf(u")=", open);
    if (open < 0 || close < 0) return field(result, PG_DIAG_CONSTRAINT_NAME);
    const QString columns = detail.mid(open + 1, close - open - 1).remove(u'"');
    return columns == u"_rowid_" ? counters.value(field(result, PG_DIAG_TABLE_NAME), columns) : columns;
}

// States of class 57P and 08 also come without the connection's end, e.g. from a pooler.
[[noreturn]] void raiseState(const QString& state, const PGresult* result, const Counters& counters) {
    const QString message = field(result, PG_DIAG_MESSAGE_PRIMARY);
    const auto is = [&](const char16_t* wanted) { return state == QStringView(wanted); };
    if (is(u"23505")) raise(3022, keyOf(result, counters));
    if (is(u"23502")) raise(3314, field(result, PG_DIAG_COLUMN_NAME));
    if (is(u"23514")) raiseCheck(field(result, PG_DIAG_CONSTRAINT_NAME));
    if (is(u"22012")) RaiseDivisionByZero();
    if (is(u"22003") || is(u"22008")) RaiseOverflow();
    if (is(u"22P02") || is(u"22P05") || is(u"22021")) raise(3421, field(result, PG_DIAG_COLUMN_NAME));
    if (is(u"22001")) raise(3163, field(result, PG_DIAG_COLUMN_NAME));
    if (is(u"55P03") || is(u"40P01") || is(u"40001")) raise(3260);
    if (is(u"53100"))
        raiseTold(3026, u"Auf dem Datenbankserver ist kein Speicherplatz mehr frei. Es wurde "
                        "nichts gebucht; was schon gebucht war, ist sicher. Bitte Platz auf dem "
                        "Server schaffen und den Vorgang wiederholen."_s);
    if (is(u"53200")) throw std::bad_alloc();
    if (is(u"25006")) raise(3027);
    if (is(u"42501"))
        raiseTold(3112, u"Dem Benutzer des Datenbankservers fehlt ein Recht. Es wurde nichts geändert."_s,
                  message);
    if (is(u"57014")) raiseTold(3059, u"Der Vorgang wurde abgebrochen. Es wurde nichts geändert."_s);
    if (state.startsWith(u"54")) raise(3360);
    if (state.startsWith(u"XX00") || state.startsWith(u"58"))
        raise(state.startsWith(u"XX00") && state != u"XX000" ? 3049 : 3043, message);
    raise(3000, message);
}

const QString nothingDone = u" Es wurde nichts gebucht; was schon gebucht war, ist auf dem Server sicher."_s;

QString whatEnded(Ended how) {
    switch (how) {
    case Ended::Silent: {
        const double seconds = std::chrono::duration<double>(ServerLimit()).count();
        return u"Der Datenbankserver hat %1 Sekunden lang nicht geantwortet"_s.arg(
            QString::number(seconds, 'g', 4).replace(u'.', u','));
    }
    case Ended::Cancelled:
        return u"Das Warten auf den Datenbankserver wurde abgebrochen"_s;
    case Ended::Cut:
        break;
    }
    return u"Die Verbindung zum Datenbankserver ging verloren"_s;
}

} // namespace

void raiseTold(int number, const QString& description, const QString& details) {
    throw DetailedError(number, description, details, u"Store"_s);
}

void raisePostgres(const PGresult* result, const Counters& counters) {
    const QString state = field(result, PG_DIAG_SQLSTATE);
    bool digits = false;
    if (const int number = state.mid(1).toInt(&digits); digits && state.startsWith(u'J'))
        throw RuntimeError(number, field(result, PG_DIAG_MESSAGE_PRIMARY), u"Store"_s);
    raiseState(state, result, counters);
}

bool isStalePlan(const PGresult* result) {
    const QString state = field(result, PG_DIAG_SQLSTATE);
    return state == u"0A000" || state == u"26000";
}

bool mayPass(const ConnectFault& fault) {
    if (fault.timedOut) return false;
    if (fault.stage == ConnectFault::Stage::Network) return !fault.unknownHost;
    if (fault.state.isEmpty()) return fault.stage == ConnectFault::Stage::Login && !fault.passwordMissing;
    return fault.state == u"57P03" || fault.state == u"57P01" || fault.state == u"57P02";
}

void raiseConnect(const ConnectFault& fault) {
    if (fault.passwordMissing)
        raiseTold(3031,
                  u"Der Datenbankserver '%1' verlangt ein Kennwort für '%2'. Es gehört in die Kennwortdatei "
                  "(.pgpass) oder in die Adresse des Servers."_s.arg(fault.host, fault.user));
    if (fault.state.startsWith(u"28P01"))
        raiseTold(3031, u"Der Datenbankserver '%1' weist das Kennwort von '%2' zurück."_s.arg(fault.host,
                                                                                              fault.user));
    if (fault.state.startsWith(u"28"))
        raiseTold(3029,
                  u"Der Datenbankserver '%1' lässt den Benutzer '%2' von dieser Kasse aus nicht zu. "
                  "Bitte Benutzer und Zugangsregeln des Servers prüfen."_s.arg(fault.host, fault.user),
                  fault.words);
    if (fault.state == u"3D000")
        raiseTold(3024, u"Auf dem Datenbankserver '%1' gibt es keine Datenbank '%2'."_s.arg(fault.host,
                                                                                            fault.database));
    if (fault.state == u"53300")
        raiseTold(
            notConnected,
            u"Der Datenbankserver '%1' nimmt keine weiteren Verbindungen an.%2 Bitte nicht "
            "benötigte Programme abmelden oder max_connections erhöhen."_s.arg(fault.host, nothingDone));
    if (fault.state == u"57P03" || fault.state == u"57P01" || fault.state == u"57P02")
        raiseTold(notConnected,
                  u"Der Datenbankserver '%1' startet oder beendet sich gerade.%2 Bitte in einer "
                  "Minute wiederholen."_s.arg(fault.host, nothingDone));
    if (fault.stage == ConnectFault::Stage::Tls && !fault.timedOut)
        raiseTold(notConnected,
                  u"Die verschlüsselte Verbindung (TLS) zum Datenbankserver '%1' kam nicht "
                  "zustande.%2 Bitte Zertifikat und sslmode prüfen."_s.arg(fault.host, nothingDone),
                  fault.words);
    if (fault.unknownHost)
        raiseTold(notConnected,
                  u"Der Name des Datenbankservers '%1' ist im Netz nicht bekannt.%2 Bitte die Adresse "
                  "und das Netz prüfen."_s.arg(fault.host, nothingDone));
    raiseTold(notConnected,
              u"Der Datenbankserver '%1' ist nicht zu erreichen.%2 Bitte Netz und Server prüfen und "
              "den Vorgang wiederholen."_s.arg(fault.host, nothingDone),
              fault.words);
}

void raiseLost(Ended how) {
    raiseTold(notConnected, whatEnded(how) + u'.' + nothingDone +
                                u" Bitte Netz und Server prüfen und den Vorgang wiederholen."_s);
}

void raiseLostTransaction() {
    raiseTold(
        notConnected,
        u"Die Verbindung zum Datenbankserver ging mitten im Vorgang verloren. Der Server nimmt ihn "
        "vollständig zurück; was vorher gebucht war, ist sicher. Bitte den Vorgang von vorn beginnen."_s);
}

void raiseUnknownOutcome(Ended how) {
    raiseTold(outcomeUnknown,
              whatEnded(how) +
                  u", während er schrieb. Ob die letzte Änderung angekommen ist, steht nicht fest; alles "
                  "davor ist sicher. Bitte nachsehen, bevor der Vorgang wiederholt wird."_s);
}

} // namespace store
