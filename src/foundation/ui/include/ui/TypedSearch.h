#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class ListView;
class QLabel;
class QLineEdit;
class RecordList;
class RuntimeError;
class TextSearch;

/// Where one searches.
struct SearchedTable {
    QString name;        ///< of the table
    QString key;         ///< its unique column, the one of the list's keys
    QStringList columns; ///< those that are looked through
    QString order;       ///< behind ORDER BY
    QString condition{}; ///< which rows count; "" for all
};

/// One column of a search, counted as in SearchedTable, and the pattern of LIKE that it has to meet.
struct TextCondition {
    int column = 0;
    QString pattern;
};

/// A list that follows what is typed. Each change of the box asks anew; on a server after a short pause. The
/// newest text wins, older hits never stand as those of a newer text, typing is never held up, and "keine
/// Treffer" is told when it is certain. The rows are those of the statement that the conditions make, joined
/// by OR, in its order.
///
///     m_search = new TypedSearch({u"Artikel"_s, u"Nummer"_s, {u"Nummer"_s, u"Name"_s}, u"Name ASC"_s},
///                                [](const QString& t) -> std::vector<TextCondition> {
///                                    return {{0, t + u'*'}, {1, u'*' + t + u'*'}};
///                                }, *m_ui->txtSuchBegriff, *m_ui->lvwArtikel, *m_hits, *m_ui->lblTreffer);
///     void ok() { if (m_search->confirm()) ... take m_ui->lvwArtikel->currentKey() ... }
class TypedSearch : public QObject {
    Q_OBJECT

  public:
    /// What a text asks for; the conditions are asked as they are, wildcards included.
    using Conditions = std::function<std::vector<TextCondition>(const QString& text)>;

    /// Over gDB. The list shows `hits`; `told` tells how the search stands. Belongs to the box.
    TypedSearch(const SearchedTable& table, Conditions conditions, QLineEdit& box, ListView& list,
                RecordList& hits, QLabel& told);
    ~TypedSearch() override;

    /// Asks for what stands in the box, at once.
    void start();
    /// Stops; the list shows something else from now on, until the box is changed or start() is called.
    void leave();
    /// Enter: true when the hits of what stands in the box are shown. Else they are asked for, unless that
    /// has been done, and nothing may be chosen.
    [[nodiscard]] bool confirm();
    /// What the list shows is not yet that of the text in the box.
    [[nodiscard]] bool isRunning() const { return m_state == State::Pausing || m_state == State::Asked; }
    /// All hits of what stands in the box are known.
    [[nodiscard]] bool isDone() const { return m_state == State::Done; }

  signals:
    void stood();    ///< the first screen of hits stands, or it is certain that there are none
    void finished(); ///< all hits are known

  private:
    enum class State { Left, Pausing, Asked, Stands, Done, Failed };

    void change();
    void show(const QStringList& keys, bool first);
    void finish();
    void fail(const RuntimeError& error);
    void tell(const QString& text);

    const QString m_select;
    const Conditions m_conditions;
    QLineEdit& m_box;
    ListView& m_list;
    RecordList& m_hits;
    QLabel& m_told;
    std::unique_ptr<TextSearch> m_search;
    State m_state = State::Left;
    QTimer m_pause, m_slow;
    bool m_isDistant = false;
};
