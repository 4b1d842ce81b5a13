#include <zvt/protocol/Texts.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace zvt {

namespace {

constexpr std::u16string_view upperHalf =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0";
static_assert(upperHalf.size() == 128);

using Line = std::pair<int, const char16_t*>;

constexpr Line states[] = {
    {0x00, u"Bitte Betrag am Terminal bestätigen"},
    {0x01, u"Bitte Anzeige am Terminal beachten"},
    {0x02, u"Bitte Anzeige am Terminal beachten"},
    {0x03, u"Vorgang nicht möglich"},
    {0x04, u"Warten auf die Antwort der Bank"},
    {0x05, u"Terminal sendet Autostorno"},
    {0x06, u"Terminal sendet Nachbuchungen"},
    {0x07, u"Karte nicht zugelassen"},
    {0x08, u"Karte unbekannt"},
    {0x09, u"Karte verfallen"},
    {0x0A, u"Bitte Karte einstecken oder vorhalten"},
    {0x0B, u"Bitte Karte entnehmen"},
    {0x0C, u"Karte nicht lesbar"},
    {0x0D, u"Vorgang abgebrochen"},
    {0x0E, u"Vorgang wird bearbeitet, bitte warten"},
    {0x0F, u"Terminal beginnt einen Kassenabschluss"},
    {0x10, u"Karte ungültig"},
    {0x11, u"Guthabenanzeige"},
    {0x12, u"Systemfehler im Terminal"},
    {0x13, u"Zahlung nicht möglich"},
    {0x14, u"Guthaben nicht ausreichend"},
    {0x15, u"Geheimzahl falsch"},
    {0x16, u"Limit nicht ausreichend"},
    {0x17, u"Bitte warten"},
    {0x18, u"Geheimzahl zu oft falsch"},
    {0x19, u"Kartendaten falsch"},
    {0x1A, u"Servicemodus"},
    {0x1B, u"Zahlung genehmigt"},
    {0x1C, u"Zahlung erfolgt"},
    {0x1D, u"Zahlung abgelehnt"},
    {0x26, u"Eingabe der Mobilfunknummer am Terminal"},
    {0x27, u"Wiederholung der Mobilfunknummer am Terminal"},
    {0x28, u"Währungsauswahl, bitte warten"},
    {0x29, u"Sprachauswahl, bitte warten"},
    {0x2A, u"Zum Laden Karte einstecken"},
    {0x2B, u"Offline-Notbetrieb, bitte warten"},
    {0x2C, u"Auswahl Debit/Kredit, bitte warten"},
    {0x68, u"Kundenkarte erkannt"},
    {0x69, u"Bitte Währung am Terminal auswählen"},
    {0xC7, u"Eingabe des Kilometerstands am Terminal"},
    {0xC8, u"Terminal wartet auf den Kassierer"},
    {0xC9, u"Terminal beginnt eine Diagnose"},
    {0xCA, u"Terminal beginnt eine Initialisierung"},
    {0xCB, u"Händlerjournal voll"},
    {0xCC, u"Lastschrift nicht möglich, Geheimzahl notwendig"},
    {0xD2, u"Verbindung wird hergestellt"},
    {0xD3, u"Verbindung besteht"},
    {0xE0, u"Bitte Anwendung am Terminal wählen"},
    {0xE1, u"Bitte Sprache am Terminal wählen"},
    {0xE2, u"Terminal verlangt die Reinigungskarte"},
    {0xF1, u"Offline"},
    {0xF2, u"Online"},
    {0xF3, u"Offline-Zahlung"},
};

constexpr Line results[] = {
    {0x64, u"Karte nicht lesbar"},
    {0x65, u"Kartendaten fehlen"},
    {0x66, u"Fehler bei der Verarbeitung der Karte"},
    {0x67, u"Funktion für diese Karte nicht erlaubt"},
    {0x68, u"Funktion für diese Karte nicht erlaubt"},
    {0x6A, u"Umsatzspeicher des Terminals voll"},
    {0x6B, u"Funktion gesperrt, das Terminal ist nicht angemeldet"},
    {0x6C, u"Abbruch oder Zeitüberschreitung am Terminal"},
    {0x6E, u"Karte gesperrt"},
    {0x6F, u"falsche Währung"},
    {0x71, u"Guthaben nicht ausreichend"},
    {0x72, u"Chip fehlerhaft"},
    {0x73, u"Kartendaten falsch"},
    {0x77, u"Kassenschnitt nicht möglich"},
    {0x78, u"Karte verfallen"},
    {0x79, u"Karte noch nicht gültig"},
    {0x7A, u"Karte unbekannt"},
    {0x7D, u"Kommunikationsfehler des Terminals"},
    {0x83, u"Funktion nicht möglich"},
    {0x85, u"Schlüssel fehlt im Terminal"},
    {0x89, u"Tastatur der Geheimzahl defekt"},
    {0x9A, u"Fehler im Protokoll"},
    {0x9B, u"Fehler beim Verbindungsaufbau des Terminals"},
    {0x9C, u"Terminal ist noch beschäftigt"},
    {0xA0, u"Empfänger nicht bereit"},
    {0xA1, u"Gegenstelle antwortet nicht"},
    {0xA3, u"keine Verbindung zum Rechenzentrum"},
    {0xA5, u"Funktion aus Sicherheitsgründen nicht erlaubt"},
    {0xB1, u"Speicher des Terminals voll"},
    {0xB2, u"Händlerjournal voll"},
    {0xB4, u"bereits storniert"},
    {0xB5, u"Storno nicht möglich"},
    {0xB7, u"Betrag falsch"},
    {0xC1, u"Händlerkarte gesperrt"},
    {0xC2, u"Diagnose erforderlich"},
    {0xC3, u"Höchstbetrag überschritten"},
    {0xC5, u"Zahlungsart wird nicht unterstützt"},
    {0xC6, u"Währung nicht anwendbar"},
    {0xC8, u"Betrag zu klein"},
    {0xC9, u"Höchstbetrag zu klein"},
    {0xCB, u"Funktion nur in Euro erlaubt"},
    {0xCC, u"Drucker nicht bereit"},
    {0xD2, u"Funktion für diese Karte nicht erlaubt"},
    {0xDC, u"es steckt noch eine Karte"},
    {0xE0, u"Fernwartung läuft"},
    {0xE2, u"Kartenleser defekt"},
    {0xE4, u"Terminal muss aktiviert werden"},
    {0xEC, u"Geheimzahl kann nicht geprüft werden"},
    {0xF0, u"ein Kassenschnitt steht noch aus"},
    {0xF1, u"Offline-Zahlung nicht möglich"},
    {0xFC, u"notwendiges Gerät fehlt oder ist defekt"},
    {0xFF, u"Systemfehler im Terminal"},
};

constexpr Line cards[] = {
    {2, u"ec-Karte"},    {5, u"girocard"}, {6, u"Mastercard"},     {8, u"American Express"},
    {9, u"Lastschrift"}, {10, u"VISA"},    {11, u"VISA Electron"}, {12, u"Diners"},
    {13, u"V PAY"},      {14, u"JCB"},     {30, u"GeldKarte"},     {46, u"Maestro"},
};

template <size_t size>
QString lookUp(const Line (&lines)[size], int code) {
    const auto* line = std::ranges::find(lines, code, &Line::first);
    return line == std::end(lines) ? QString() : QString::fromUtf16(line->second);
}

} // namespace

QString decodeText(const QByteArray& bytes, Charset charset) {
    QString text;
    for (const char c : bytes) {
        const auto byte = static_cast<quint8>(c);
        if (byte == 0) break;
        if (byte < 0x20 || byte == 0x7F)
            text += u' ';
        else if (byte < 0x80 || charset == Charset::Latin1)
            text += QChar(char16_t(byte));
        else
            text += QChar(upperHalf[byte - 0x80]);
    }
    return text;
}

QString stateText(int state) {
    const QString text = lookUp(states, state);
    if (!text.isEmpty() || state < 0x41 || state > 0x67) return text;
    // The same states with a card that still sits in the reader.
    const QString removing = u"Bitte Karte entnehmen"_s;
    const QString before = lookUp(states, state - 0x40);
    return before.isEmpty() || before == removing ? removing : before + u'\n' + removing;
}

QString resultText(int code) {
    const QString text = lookUp(results, code);
    if (!text.isEmpty()) return text;
    const QString number = u" (%1)"_s.arg(code, 2, 16, QChar(u'0')).toUpper();
    return code >= 0x01 && code <= 0x63 ? u"von der Bank abgelehnt"_s + number
                                        : u"unbekannter Fehler"_s + number;
}

QString cardTypeName(int type) { return lookUp(cards, type); }

} // namespace zvt
