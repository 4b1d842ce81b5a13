#include "Copies.h"

#include <session/Globals.h>
#include <session/MsgBox.h>
#include <session/WaitScreen.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostUnasked = 20;
constexpr int tellAfterMs = 2000;

QString shown(int count) { return QLocale(QLocale::German, QLocale::Germany).toString(count); }

/// How many copies are meant.
int wantedCopies() {
    const int copies = gDruckerKopies;
    if (copies <= mostUnasked) return copies;
    const MsgAnswer answer =
        MsgBox(u"Eingestellt sind %1 Kopien.\n\nSollen wirklich so viele gedruckt werden? Mit \"Nein\" wird "
               "der Beleg einmal gedruckt."_s.arg(shown(copies)),
               MsgIcon::Question, MsgButtons::YesNo, QString::fromUtf16(SystemTitle), MsgAnswer::No);
    return answer == MsgAnswer::Yes ? copies : 1;
}

class Progress {
  public:
    Progress(int copies, CopyScreen screen)
        : m_screen(screen == CopyScreen::Asks ? nullptr : CurrentWaitScreen())
        , m_copies(copies)
        , m_shared(screen == CopyScreen::Waits) {
        m_timer.start();
    }
    ~Progress() {
        if (m_isShown) m_screen->End();
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Between two copies; false when the person wished to stop.
    [[nodiscard]] bool next(int copy) {
        if (!m_screen || m_timer.elapsed() < tellAfterMs) return true;
        const QString text = u"Kopie %1 von %2 wird gedruckt.\n\n\"Abbrechen\" beendet den Druck nach "
                             "dieser Kopie."_s.arg(shown(copy), shown(m_copies));
        // A copy that waited for its printer has ended the screen.
        if (!std::exchange(m_isShown, true) || m_shared)
            m_screen->Begin(u"Drucken"_s, text);
        else
            m_screen->Show(text);
        if (QCoreApplication::instance()) QCoreApplication::processEvents();
        return !m_screen->TakeCancel();
    }

  private:
    WaitScreen* m_screen;
    QElapsedTimer m_timer;
    int m_copies;
    bool m_shared, m_isShown = false;
};

} // namespace

bool WantsFurtherCopies(int left) {
    return left <= mostUnasked ||
           AskYesNo(u"Sollen die übrigen %1 Kopien noch gedruckt werden?"_s.arg(shown(left)));
}

void PrintCopies(const std::function<bool(int copy, int copies)>& print, CopyScreen screen) {
    const int copies = wantedCopies();
    Progress progress(copies, screen);
    for (int copy = 1; copy <= copies; ++copy) {
        if (copy > 1 && !progress.next(copy)) {
            MsgBox(u"Der Druck wurde nach %1 von %2 Kopien abgebrochen. Die Buchung bleibt davon unberührt."_s
                       .arg(shown(copy - 1), shown(copies)));
            return;
        }
        if (!print(copy, copies)) return;
    }
}
