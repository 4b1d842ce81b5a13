#include "TextSearch.h"

#include <session/Globals.h>
#include <text/RuntimeError.h>
#include <ui/ListView.h>
#include <ui/RecordList.h>
#include <ui/TypedSearch.h>

#include <QLabel>
#include <QLineEdit>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr std::chrono::milliseconds typingPause = 150ms, emptyAfter = 250ms, slowAfter = 3s;
constexpr int longestText = 100; ///< as long as a name
} // namespace

TypedSearch::TypedSearch(const SearchedTable& table, Conditions conditions, QLineEdit& box, ListView& list,
                         RecordList& hits, QLabel& told)
    : QObject(&box)
    , m_select(u"SELECT * FROM "_s + table.name)
    , m_conditions(std::move(conditions))
    , m_box(box)
    , m_list(list)
    , m_hits(hits)
    , m_told(told)
    , m_search(std::make_unique<TextSearch>(table, gDB->Reader()))
    , m_isDistant(!gDB->ForeignChanges()) {
    m_box.setMaxLength(longestText);
    m_pause.setSingleShot(true);
    m_pause.setInterval(typingPause);
    m_slow.setSingleShot(true);
    connect(&m_box, &QLineEdit::textChanged, this, &TypedSearch::change);
    connect(&m_pause, &QTimer::timeout, this, &TypedSearch::start);
    connect(&m_slow, &QTimer::timeout, this, [this] {
        if (m_hits.rowCount() > 0) m_hits.openKeys(m_select, {});
        if (m_slow.intervalAsDuration() == slowAfter)
            return tell(u"sucht... Die Datenbank antwortet noch nicht; Esc bricht ab."_s);
        m_slow.start(slowAfter);
    });
    connect(m_search.get(), &TextSearch::found, this, &TypedSearch::show);
    connect(m_search.get(), &TextSearch::finished, this, &TypedSearch::finish);
    connect(m_search.get(), &TextSearch::failed, this, &TypedSearch::fail);
}

TypedSearch::~TypedSearch() = default;

void TypedSearch::tell(const QString& text) { m_told.setText(text); }

void TypedSearch::change() {
    if (!m_isDistant) return start();
    m_search->stop();
    m_hits.setOutdated();
    m_state = State::Pausing;
    tell(u"sucht..."_s);
    m_pause.start();
}

void TypedSearch::start() {
    m_pause.stop();
    m_hits.setOutdated();
    m_state = State::Asked;
    tell(u"sucht..."_s);
    m_slow.start(emptyAfter);
    m_search->ask(m_conditions(m_box.text()));
}

void TypedSearch::leave() {
    m_pause.stop();
    m_slow.stop();
    m_search->stop();
    m_state = State::Left;
    tell({});
}

bool TypedSearch::confirm() {
    switch (m_state) {
    case State::Stands:
    case State::Done:
        return true;
    case State::Left:
        if (m_hits.rowCount() > 0) return true;
        start();
        break;
    case State::Asked:
        break;
    case State::Pausing:
    case State::Failed:
        start();
    }
    return false;
}

void TypedSearch::show(const QStringList& keys, bool first) {
    if (!first) return m_hits.appendKeys(keys);
    m_slow.stop();
    m_state = State::Stands;
    m_hits.openKeys(m_select, keys);
    if (!keys.isEmpty()) m_list.selectRow(m_hits.rowCount() - static_cast<int>(keys.size()));
    emit stood();
}

void TypedSearch::finish() {
    m_state = State::Done;
    const qsizetype count = m_hits.rowCount();
    tell(count == 0 ? u"keine Treffer"_s : count == 1 ? u"1 Treffer"_s : u"%L1 Treffer"_s.arg(count));
    emit finished();
}

void TypedSearch::fail(const RuntimeError& error) {
    m_slow.stop();
    m_state = State::Failed;
    m_hits.openKeys(m_select, {});
    tell(u"Die Suche ist nicht möglich: "_s + error.Description);
    emit stood();
}
