#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/ServerWait.h>
#include <session/Settings.h>
#include <session/WaitScreen.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds tellAfter{2};

QString textFor(const store::ServerWait& wait) {
    const QString server =
        wait.server.isEmpty() ? u"Der Datenbankserver"_s : u"Der Datenbankserver '%1'"_s.arg(wait.server);
    return server + (wait.connecting ? u" ist noch nicht verbunden."_s : u" antwortet nicht."_s) +
           u"\n\nDie Kasse wartet noch %1 s."_s.arg(
               std::chrono::duration_cast<std::chrono::seconds>(wait.left).count() + 1);
}

} // namespace

ScreenPatience::~ScreenPatience() { Over(); }

bool ScreenPatience::GoOn(const store::ServerWait& wait) {
    if (wait.waited < tellAfter) {
        Over(); // it goes on
        return true;
    }
    const QString text = textFor(wait);
    if (!m_screen) {
        m_screen = CurrentWaitScreen();
        if (!m_screen) return true;
        m_screen->Begin(u"Datenbankserver"_s, text);
    } else if (text != m_told) {
        m_screen->Show(text);
    }
    m_told = text;
    m_screen->Listen();
    return !m_screen->TakeCancel();
}

void ScreenPatience::Over() noexcept {
    if (m_screen) m_screen->End();
    m_screen = nullptr;
}

void TakeServerLimit() {
    const auto seconds = SettingNumber(*gSystem, u"GLOBAL"_s, u"ServerWartezeit"_s, KonfigIni());
    store::SetServerLimit(seconds ? std::chrono::milliseconds(qRound64(*seconds * 1000))
                                  : store::usualServerLimit);
}
