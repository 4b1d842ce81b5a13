#include <session/Globals.h>
#include <ui/ScanRecogniser.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The closing key may be later than a character: some scanners pause before it. A person has not typed that
/// many characters that fast, so nobody notices the wait.
constexpr int closing = 3;

QChar signOf(const QString& setting) {
    if (setting.size() == 1) return setting.front();
    if (!setting.startsWith(u'#')) return {};
    bool ok = false;
    const ushort number = QStringView(setting).mid(1).toUShort(&ok);
    return ok ? QChar(number) : QChar();
}

} // namespace

ScanFigures ScanFigures::FromSettings() {
    return {gScannerZeichen, gScannerAbstand, signOf(gScannerPraefix), signOf(gScannerSuffix)};
}

void ScanRecogniser::reset() {
    m_waiting = m_prefixed = m_tail = m_suffixed = false;
    m_code.clear();
}

bool ScanRecogniser::complete() const {
    if (m_prefixed) return !m_code.isEmpty();
    return m_code.size() >= (m_tail ? (m_figures.characters + 1) / 2 : m_figures.characters);
}

qint64 ScanRecogniser::patience() const {
    const bool sure = !m_waiting || (complete() && !m_tail);
    return qint64(m_figures.gap) * (sure ? closing : 1);
}

void ScanRecogniser::add(QChar character, qint64 time) {
    if (!m_waiting) {
        reset();
        m_waiting = true;
        m_tail = m_changed >= 0 && time - m_changed <= m_figures.gap;
        m_prefixed = !m_figures.prefix.isNull() && character == m_figures.prefix;
        if (!m_prefixed) m_code = character;
    } else {
        m_code += character;
    }
    m_last = time;
}

ScanRecogniser::Verdict ScanRecogniser::scan(Verdict verdict) {
    verdict.fate = Fate::Scan;
    m_waiting = m_prefixed = m_tail = false;
    return verdict;
}

ScanRecogniser::Verdict ScanRecogniser::press(Kind kind, QChar character, qint64 time) {
    Verdict verdict;
    if (m_suffixed && !m_waiting) {
        m_suffixed = false;
        if (kind == Kind::Close && time <= due()) {
            verdict.fate = Fate::Rest;
            return verdict;
        }
    }
    if (m_waiting && time - m_last > (kind == Kind::Close ? patience() : m_figures.gap)) {
        verdict.before = true;
        reset();
    }
    if (!m_waiting) m_figures = m_next;
    if (m_figures.characters < 1) return verdict;

    switch (kind) {
    case Kind::Character:
        if (m_waiting && !m_figures.suffix.isNull() && character == m_figures.suffix && complete()) {
            m_suffixed = true;
            m_last = time;
            return scan(verdict);
        }
        add(character, time);
        verdict.fate = Fate::Waits;
        return verdict;
    case Kind::Silent:
        if (m_waiting) verdict.fate = Fate::Waits;
        return verdict;
    case Kind::Close:
        if (m_waiting && complete()) return scan(verdict);
        break;
    case Kind::Other:
        break;
    }
    verdict.before |= m_waiting;
    reset();
    return verdict;
}

bool ScanRecogniser::pause(qint64 now) {
    if (!m_waiting || now <= due()) return false;
    reset();
    return true;
}
