// A card terminal that does what it is told: zvt_simulator tcp|serial [option | act]...
//
// Writes the port or the device in its first line, then a line for each command that it gets. The acts are
// used up one for each payment, reversal, refund and end of day; after the last one it pays. Options:
// norepeat, last=CENTS (an earlier payment), busy=N (registrations refused after a lost line), plain (no
// containers in a registration).
#include "SimulatorLine.h"

#include <zvt/protocol/Fields.h>

#include <csignal>
#include <deque>

using namespace zvt;

namespace {

struct Record {
    qint64 amount = 0;
    int receipt = 0;
    int result = 0;
};

class Simulator {
  public:
    Simulator(bool serial, int count, char** words)
        : m_line(serial) {
        for (int i = 0; i < count; ++i)
            option(words[i]);
        std::printf("%s\n", m_line.name().c_str());
    }

    void run() {
        while (m_line.connected())
            if (const auto apdu = m_line.read()) take(*apdu);
    }

  private:
    void option(const std::string& word) {
        if (word == "norepeat")
            m_norepeat = true;
        else if (word == "plain")
            m_plain = true;
        else if (word.starts_with("last="))
            book(std::stoll(word.substr(5)));
        else if (word.starts_with("busy="))
            m_busyLater = std::stoi(word.substr(5));
        else
            m_acts.push_back(word);
    }
    void book(qint64 amount, int result = 0) { m_last = Record{amount, ++m_receipt, result}; }

    void take(const Apdu& apdu) {
        std::printf("%04X %s\n", static_cast<unsigned>(apdu.code()), apdu.data.toHex().constData());
        switch (apdu.code()) {
        case 0x0600:
            if (m_busy > 0) {
                --m_busy;
                return m_line.send(negativeAnswer(0x9C));
            }
            if (m_plain && apdu.data.size() > 6) return m_line.send(negativeAnswer(0x83));
            return complete({});
        case 0x0501:
            return complete(QByteArray::fromHex("F0F0F5312E302E37") + QByteArray(1, '\0') + '\x06' +
                            encodeTlv(0xE4, encodeTlv(0x1F40, "SIM 1")).prepend(char(10)));
        case 0x0620:
            if (m_norepeat) return m_line.send(negativeAnswer(0x83));
            m_line.send(positiveAnswer());
            if (!m_last) return tell(command(0x061E, QByteArray(1, '\x6A')));
            tell(status(*m_last));
            return tell(command(0x060F));
        case 0x0601:
        case 0x0630:
        case 0x0631:
        case 0x0650:
            return act(apdu);
        default:
            if (!apdu.isAnswer()) m_line.send(negativeAnswer(0x83));
        }
    }

    void complete(const QByteArray& data) {
        m_line.send(positiveAnswer());
        tell(command(0x060F, data));
    }
    /// A command to the till; its answer, if there is one.
    Apdu say(const Apdu& apdu) {
        m_line.send(apdu);
        for (auto reply = m_line.read(2000); reply; reply = m_line.read(2000)) {
            if (reply->isAnswer()) return *reply;
            m_line.send(negativeAnswer(0x83)); // a wish to cancel that comes too late
        }
        return negativeAnswer(0xFF);
    }
    void tell(const Apdu& apdu) { (void)say(apdu); }
    void state(int code) { tell(command(0x04FF, QByteArray(1, static_cast<char>(code)))); }

    static Apdu status(const Record& record, const QByteArray& words = {}) {
        QByteArray data;
        data.append('\x27').append(static_cast<char>(record.result));
        data.append('\x04').append(bcd(record.amount, 6)).append('\x49').append(bcd(978, 2));
        data.append('\x0B')
            .append(bcd(record.receipt + 100, 3))
            .append('\x87')
            .append(bcd(record.receipt, 2));
        data.append('\x22').append(QByteArray::fromHex("F0F866EEEEEEEEEE1234"));
        data.append('\x8B').append(QByteArray::fromHex("F0F5")).append("Karo\0", 5);
        if (!words.isEmpty())
            data.append('\x3C').append(QByteArray::fromHex("F0F1F5")).append(words.leftJustified(15));
        return command(0x040F, data);
    }
    static qint64 amountOf(const Apdu& apdu) {
        const qsizetype password = apdu.code() == 0x0601 ? 0 : 3;
        const Bitmaps fields = decodeBitmaps(apdu.data.mid(password));
        const QByteArray* amount = fields.find(0x04);
        return amount ? bcdNumber(*amount).value_or(0) : 0;
    }

    void act(const Apdu& apdu) {
        const qint64 amount = amountOf(apdu);
        std::string how = "ok";
        if (!m_acts.empty()) {
            how = m_acts.front();
            m_acts.pop_front();
        }
        const auto lost = [&] {
            m_busy = m_busyLater;
            m_line.hangUp();
        };
        if (how == "break-command") return lost();
        if (how == "silent") return;
        if (how == "die") return m_line.die();
        if (how == "reject") return m_line.send(negativeAnswer(0xC3));
        if (how == "late-answer") usleep(60'000);
        if (how == "old-end") { // of a dialogue that the till gave up
            tell(status({4711, 9998, 0}));
            tell(command(0x060F));
        }
        m_line.send(positiveAnswer());
        if (how == "break-answer") return lost();
        if (how == "garbage") {
            m_line.raw("HTTP/1.1 400 Bad Request\r\n\r\n");
            return lost();
        }
        if (how == "half") {
            m_line.raw(QByteArray::fromHex("040F40270004"));
            usleep(600'000);
            return lost();
        }
        if (how == "cancel" || how == "noabort") {
            state(0x0A);
            for (auto wish = m_line.read(3000); wish; wish = m_line.read(3000)) {
                if (wish->code() != 0x06B0) continue;
                std::printf("06B0\n");
                break;
            }
            m_line.send(how == "cancel" ? positiveAnswer() : negativeAnswer(0x83));
            if (how == "cancel") return tell(command(0x061E, QByteArray(1, '\x6C')));
        }
        state(0x0A);
        if (how == "slow")
            for (int i = 0; i < 8; ++i) {
                usleep(150'000);
                state(0x0E);
            }
        if (how == "stall") {
            book(amount);
            usleep(1'200'000);
            return lost();
        }
        if (how == "unknown") {
            const Apdu reply = say(command(0x06E0, "x"));
            std::printf("reply %04X\n", static_cast<unsigned>(reply.code()));
        }
        if (how == "print")
            for (const char* text : {"Beleg", ""})
                tell(command(0x06D1, QByteArray(1, '\0') + text));
        if (how == "refuse" || how == "forget") {
            book(amount, 0x05);
            if (how == "refuse") tell(status(*m_last));
            return tell(command(0x061E, QByteArray(1, '\x05')));
        }
        if (how == "abort-words" || how == "end-words") { // a refusal in the terminal's own words
            book(amount, 0x6C);
            tell(status(*m_last, "Karte abgelehnt"));
            return tell(how == "abort-words" ? command(0x061E, QByteArray(1, '\x6C')) : command(0x060F));
        }
        if (how == "break-booked") {
            book(amount);
            return lost();
        }
        if (how == "other") { // a booking of another amount remains, and the line is gone
            book(amount + 1);
            return lost();
        }
        if (how == "nostatus") {
            book(amount);
            return tell(command(0x060F));
        }
        if (how == "unreadable") {
            const Apdu reply = say(command(0x040F, QByteArray::fromHex("270022F9F9")));
            std::printf("reply %04X\n", static_cast<unsigned>(reply.code()));
            return tell(command(0x061E, QByteArray(1, '\x6C')));
        }
        if (how == "break-unacked") {
            m_line.send(status({amount, m_receipt + 1, 0}));
            return lost();
        }
        const auto before = m_last;
        if (how == "bad-block") m_line.spoil = true;
        if (how == "complain") m_line.complain = true;
        book(how == "wrong" ? amount + 100 : amount);
        const Apdu reply = say(status(*m_last));
        if (!reply.isPositive()) {
            std::printf("reply %04X\n", static_cast<unsigned>(reply.code()));
            m_last = before;
            tell(status({amount, m_receipt, 0x6C}));
            return tell(command(0x061E, QByteArray(1, '\x6C')));
        }
        if (how == "break-status") return lost();
        if (how == "abort-after") return tell(command(0x061E, QByteArray(1, '\x6C')));
        tell(command(0x060F));
    }

    SimulatorLine m_line;
    std::deque<std::string> m_acts;
    std::optional<Record> m_last;
    int m_receipt = 0, m_busy = 0, m_busyLater = 0;
    bool m_norepeat = false, m_plain = false;
};

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    if (argc < 2) return 2;
    Simulator(std::string(argv[1]) == "serial", argc - 2, argv + 2).run();
}
