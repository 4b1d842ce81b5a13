#pragma once

#include "TextStock.h"

#include <store/Database.h>
#include <ui/TypedSearch.h>

#include <QObject>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

/// Looks through a table in a thread of its own, over a connection of its own. The newest question counts:
/// an older one stops, and none of its hits is told any more.
///
/// A store that tells of changes is read into memory once, hits being told while it is read, and again when
/// anybody has written. A server is asked with the statement itself.
class TextSearch : public QObject {
    Q_OBJECT

  public:
    TextSearch(SearchedTable table, std::function<std::unique_ptr<Database>()> reader,
               QObject* parent = nullptr);
    ~TextSearch() override; ///< waits until the thread has given up, some milliseconds

    /// Gives up what was asked before.
    void ask(std::vector<TextCondition> conditions);
    void stop();

  signals:
    /// Keys in the order of the table; the first ones make a screen and come at once.
    void found(const QStringList& keys, bool first);
    void finished(); ///< all hits are told
    void failed(const RuntimeError& error);

  private:
    struct Question {
        quint64 number = 0;
        std::vector<TextCondition> conditions;
    };
    class Patience;
    class Hits;
    struct GivenUp {};

    void work();
    void answer(Database& db, const Question& question);
    void askServer(Database& db, const Question& question);
    /// Reads the table and tells hits on the way, until another question comes.
    void load(Database& db, const Question& question);
    void scan(const Question& question);
    [[nodiscard]] std::optional<Question> nextQuestion();
    /// A newer question waits, or nobody wants any answer.
    [[nodiscard]] bool isOutdated(const Question& question);
    /// Runs in the thread of the form unless another question was asked since.
    void tell(quint64 number, std::function<void()> act);

    const SearchedTable m_table;
    const std::function<std::unique_ptr<Database>()> m_reader;

    std::mutex m_mutex;
    std::condition_variable m_asked;
    Question m_question;   ///< the newest; guarded
    bool m_closed = false; ///< guarded

    // Of the thread
    TextStock m_stock;
    bool m_isWhole = false; ///< the stock holds the table as it was at m_version
    qint64 m_version = 0;
    quint64 m_answered = 0;

    std::thread m_thread;
};
