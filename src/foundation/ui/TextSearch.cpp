#include "TextSearch.h"

#include <store/ServerPatience.h>
#include <store/SqlText.h>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int firstScreen = 64, moreHits = 8192;
/// Texts beyond it are looked through without being kept.
constexpr qsizetype mostBytes = 192'000'000;
/// A server is not asked to stop for every key: what it has begun is mostly done sooner.
constexpr auto serverPatience = 700ms;
/// How often the table is read again because somebody wrote while it was read.
constexpr int mostReadings = 3;

} // namespace

/// Gives a silent server up as soon as nobody waits for its answer.
class TextSearch::Patience : public store::ServerPatience {
  public:
    explicit Patience(TextSearch& search)
        : m_search(search)
        , m_before(store::SetServerPatience(this)) {}
    ~Patience() override { store::SetServerPatience(m_before); }
    Patience(const Patience&) = delete;
    Patience& operator=(const Patience&) = delete;
    bool GoOn(const store::ServerWait& wait) override {
        const std::lock_guard lock(m_search.m_mutex);
        return !m_search.m_closed &&
               (wait.waited < serverPatience || m_search.m_question.number == m_search.m_answered);
    }
    void Over() noexcept override {}

  private:
    TextSearch& m_search;
    store::ServerPatience* m_before;
};

/// Collects the hits of one question: the first screen goes out at once, the rest in large pieces.
class TextSearch::Hits {
  public:
    Hits(TextSearch& search, quint64 number)
        : m_search(search)
        , m_number(number) {}
    void add(const QString& key) {
        m_keys.append(key);
        if (m_keys.size() >= (m_isFirst ? firstScreen : moreHits)) send();
    }
    void finish() {
        if (m_isFirst || !m_keys.isEmpty()) send();
        m_search.tell(m_number, [search = &m_search] { emit search->finished(); });
    }

  private:
    void send() {
        m_search.tell(m_number,
                      [search = &m_search, keys = std::exchange(m_keys, {}),
                       first = std::exchange(m_isFirst, false)] { emit search->found(keys, first); });
    }
    TextSearch& m_search;
    quint64 m_number;
    QStringList m_keys;
    bool m_isFirst = true;
};

TextSearch::TextSearch(SearchedTable table, std::function<std::unique_ptr<Database>()> reader,
                       QObject* parent)
    : QObject(parent)
    , m_table(std::move(table))
    , m_reader(std::move(reader))
    , m_stock(static_cast<int>(m_table.columns.size()))
    , m_thread([this] { work(); }) {}

TextSearch::~TextSearch() {
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_asked.notify_all();
    m_thread.join();
}

void TextSearch::ask(std::vector<TextCondition> conditions) {
    {
        const std::lock_guard lock(m_mutex);
        m_question = {m_question.number + 1, std::move(conditions)};
    }
    m_asked.notify_all();
}

void TextSearch::stop() { ask({}); }

bool TextSearch::isOutdated(const Question& question) {
    const std::lock_guard lock(m_mutex);
    return m_closed || m_question.number != question.number;
}

void TextSearch::tell(quint64 number, std::function<void()> act) {
    QMetaObject::invokeMethod(
        this,
        [this, number, act = std::move(act)] {
            if (m_question.number == number) act(); // only this thread changes it
        },
        Qt::QueuedConnection);
}

std::optional<TextSearch::Question> TextSearch::nextQuestion() {
    std::unique_lock lock(m_mutex);
    m_asked.wait(lock, [this] { return m_closed || m_question.number != m_answered; });
    if (m_closed) return std::nullopt;
    m_answered = m_question.number;
    return m_question;
}

void TextSearch::work() {
    const Patience patience(*this);
    std::unique_ptr<Database> db;
    while (const auto question = nextQuestion()) {
        if (question->conditions.empty()) continue;
        try {
            static_cast<void>(TextQuestion(question->conditions)); // raises what is wrong with a pattern
        } catch (const RuntimeError& error) {
            tell(question->number, [this, error] { emit failed(error); });
            continue;
        }
        try {
            if (!db) db = m_reader();
            answer(*db, *question);
        } catch (const GivenUp&) {
            db.reset(); // what an answer was cut off from is not used again
        } catch (const RuntimeError& error) {
            db.reset();
            m_isWhole = false;
            if (!isOutdated(*question)) tell(question->number, [this, error] { emit failed(error); });
        }
    }
}

void TextSearch::answer(Database& db, const Question& question) {
    const auto changes = [&] { return db.ForeignChanges(); };
    auto version = changes();
    if (!version) return askServer(db, question);
    if (m_isWhole && *version == m_version) return scan(question);
    Question wanted = question;
    for (int reading = 0; reading < mostReadings; ++reading) {
        m_version = *version;
        const quint64 asked = wanted.number;
        load(db, wanted);
        {
            const std::lock_guard lock(m_mutex);
            if (m_closed) return;
            wanted = m_question;
            m_answered = wanted.number;
        }
        if (wanted.number == asked || wanted.conditions.empty()) return;
        // The question came while the table was read: rows written in between would be missed.
        version = changes();
        if (m_isWhole && *version == m_version) return scan(wanted);
    }
    scan(wanted);
}

void TextSearch::load(Database& db, const Question& question) {
    const TextQuestion looked(question.conditions);
    Hits hits(*this, question.number);
    bool keeps = true, late = false;
    m_isWhole = false;
    m_stock.clear();
    db.ForEachRow(
        u"SELECT %1, %2 FROM %3 ORDER BY %4;"_s.arg(
            m_table.key, m_table.columns.join(u", "_s),
            m_table.condition.isEmpty() ? m_table.name : m_table.name + u" WHERE "_s + m_table.condition,
            m_table.order),
        [](const auto&) {},
        [&](const std::vector<Value>& row) {
            m_stock.add(row);
            const int last = m_stock.rows() - 1;
            if (!late && m_stock.next(last, looked) == last) hits.add(m_stock.key(last));
            // A look at every row would cost as much as the row.
            if (last % 256 == 0 || !keeps) late = late || isOutdated(question);
            if (late) {
                const std::lock_guard lock(m_mutex);
                if (m_closed || !keeps) throw GivenUp();
            }
            keeps = keeps && m_stock.bytes() < mostBytes;
            if (!keeps) m_stock.dropLast();
        });
    m_isWhole = keeps;
    if (!late) hits.finish();
}

void TextSearch::scan(const Question& question) {
    const TextQuestion looked(question.conditions);
    Hits hits(*this, question.number);
    for (int row = m_stock.next(0, looked); row < m_stock.rows(); row = m_stock.next(row + 1, looked)) {
        hits.add(m_stock.key(row));
        if (row % 64 == 0 && isOutdated(question)) return;
    }
    hits.finish();
}

void TextSearch::askServer(Database& db, const Question& question) {
    QStringList conditions;
    for (const TextCondition& condition : question.conditions)
        conditions << u"%1 LIKE '%2'"_s.arg(m_table.columns[condition.column],
                                            sql::doubled(condition.pattern));
    QString where = u'(' + conditions.join(u" OR "_s) + u')';
    if (!m_table.condition.isEmpty()) where = m_table.condition + u" AND "_s + where;
    Hits hits(*this, question.number);
    try {
        db.ForEachRow(
            u"SELECT "_s + m_table.key + u" FROM "_s + m_table.name + u" WHERE "_s + where + u" ORDER BY "_s +
                m_table.order + u';',
            [](const auto&) {},
            [&](const std::vector<Value>& row) {
                hits.add(row[0].toText());
                if (isOutdated(question)) throw GivenUp();
            });
    } catch (const RuntimeError&) {
        if (isOutdated(question)) throw GivenUp();
        throw;
    }
    hits.finish();
}
