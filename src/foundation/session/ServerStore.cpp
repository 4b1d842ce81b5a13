#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/ServerStore.h>
#include <session/ServerWait.h>
#include <session/Startup.h>
#include <store/Database.h>
#include <store/Schema.h>
#include <store/StoreName.h>

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int longest = 255; ///< of a value in an ini file
constexpr int exists = 3204, empty = 3011;

const QString dots = u"\u2022\u2022\u2022\u2022\u2022\u2022"_s;

/// The second group of each is a password.
const std::vector<QRegularExpression>& passwords() {
    static const std::vector<QRegularExpression> patterns{
        // A password with a slash in it is no valid address, but is not for everybody's eyes either.
        QRegularExpression(u"^([a-z]+://[^:/?@]*:)([^?]*|.*)(@)"_s),
        QRegularExpression(u"([?&]password=)([^&]*)()"_s, QRegularExpression::CaseInsensitiveOption),
        QRegularExpression(u"([?&]sslpassword=)([^&]*)()"_s, QRegularExpression::CaseInsensitiveOption)};
    return patterns;
}

/// Brings what a thread in the background waits for to the one that has the screen.
class Relay : public store::ServerPatience {
  public:
    [[nodiscard]] bool GoOn(const store::ServerWait& wait) override {
        const std::lock_guard lock(m_mutex);
        m_wait = wait;
        return !m_cancelled;
    }
    void Over() noexcept override {
        const std::lock_guard lock(m_mutex);
        m_wait.reset();
    }
    void pass(store::ServerPatience& screen) {
        std::optional<store::ServerWait> wait;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_cancelled) wait = m_wait;
        }
        if (!wait) return screen.Over();
        if (screen.GoOn(*wait)) return;
        const std::lock_guard lock(m_mutex);
        m_cancelled = true;
    }

  private:
    std::mutex m_mutex;
    std::optional<store::ServerWait> m_wait;
    bool m_cancelled = false;
};

} // namespace

QString ReadServerAddress() {
    return gSystem->ReadProfileString(u"GLOBAL"_s, u"DBServer"_s, KonfigIni()).trimmed();
}

QString ServerAddressFault(const QString& address) {
    if (!store::isServer(address))
        return u"Die Adresse des Servers beginnt mit \"postgresql://\", zum Beispiel "
               "postgresql://kasse@server/laden."_s;
    if (address.size() > longest)
        return u"Die Adresse des Servers hat mehr als %1 Zeichen. Kürzer wird sie, wenn ein Teil der Angaben in "
               "einer Dienstdatei steht (postgresql:///?service=Name)."_s.arg(longest);
    return {};
}

QString ShownServerAddress(const QString& address) {
    QString shown = address;
    for (const QRegularExpression& password : passwords())
        shown.replace(password, u"\\1"_s + dots + u"\\3"_s);
    return shown;
}

QString EnteredServerAddress(const QString& shown, const QString& address) {
    QString entered = shown.trimmed();
    for (const QRegularExpression& password : passwords()) {
        const auto hidden = password.match(entered), kept = password.match(address);
        if (hidden.hasMatch() && kept.hasMatch() && hidden.captured(2) == dots)
            entered.replace(hidden.capturedStart(2), dots.size(), kept.captured(2));
    }
    return entered;
}

std::unique_ptr<Database> OpenInBackground(std::function<std::unique_ptr<Database>()> open, Waiter& waiter) {
    Relay relay;
    auto opening = std::async(std::launch::async, [&relay, open = std::move(open)] {
        store::SetServerPatience(&relay);
        return open();
    });
    ScreenPatience screen;
    waiter.Until([&] {
        if (opening.wait_for(std::chrono::seconds(0)) == std::future_status::ready) return true;
        relay.pass(screen);
        return false;
    });
    return opening.get();
}

std::unique_ptr<Database> OpenServerStore(const QString& address, Waiter& waiter) {
    return OpenInBackground([address] { return Database::OpenDatabase(address); }, waiter);
}

std::unique_ptr<Database> CreateServerStore(const QString& address, Waiter& waiter) {
    return OpenInBackground(
        [address] {
            try {
                return Database::CreateDatabase(address, {}, {}, schema::createTables);
            } catch (const RuntimeError& error) {
                if (error.Number != exists) throw;
            }
            return Database::OpenDatabase(address);
        },
        waiter);
}

bool IsEmptyServer(const RuntimeError& error) { return error.Number == empty; }

bool IsServerTrouble(const RuntimeError& error) {
    // No such database or folder, not let in, password, damaged or locked, rights, connection lost, foreign
    // tables, a move that was not finished.
    static constexpr std::array numbers{76,   3024, 3026, 3029, 3031, 3043, 3045, 3049,
                                        3050, 3112, 3151, 3157, 3260, 3343, 3734};
    return std::find(numbers.begin(), numbers.end(), error.Number) != numbers.end();
}
