#pragma once

#include <store/SqlText.h>
#include <text/Value.h>

#include <QAbstractTableModel>
#include <QCache>
#include <QIcon>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class Recordset;

/// One column of a RecordList.
struct ListColumn {
    QString title;
    QString field; ///< of the statement: what the cell shows and what a click on the head sorts by
    QString
        sample; ///< a text as wide as the column is at first; the column of the longest one takes spare room
    Qt::Alignment alignment = Qt::AlignLeft;
    std::function<QString(const Recordset&)> text{}; ///< the cell, when it is more than the field as text
    QString sort{};                                  ///< an expression to sort by, when it is not the field
};

/// A read-only list over a statement. The keys of its rows are read as far as one looks, and the rest when
/// nothing else is to do; a row is read and formatted when it is painted. So a list of a hundred thousand
/// rows stands at once and holds few of them. Sorting is the store's work, and so is finding a key.
///
///     auto* people = new RecordList({u"ID"_s, u"ID"_s}, {{u"Name"_s, u"Name"_s, u"Mustermann-Schmidt"_s},
///                                                        {u"Ort"_s, u"Ort"_s, u"Musterstadt"_s}}, this);
///     people->open(u"SELECT ID, Name, Ort FROM Personal"_s, u"Name ASC"_s);
///     lvwResult->setModel(people);
///
/// What the store raises while a list is painted is reported once, and the list stands still until it is
/// opened or read again.
class RecordList : public QAbstractTableModel {
    Q_OBJECT

  public:
    /// The key of a row, as text, and a text as wide as its column (for headers).
    enum Role { KeyRole = Qt::UserRole, SampleRole };
    /// A row's key is `prefix` and the text of `field`, which is unique: "ID" and 5 make "ID5".
    struct Key {
        QString prefix, field;
    };
    /// A row that no record stands behind, such as one of sums. Its key must not look like those of records.
    struct Extra {
        QString key;
        QStringList texts;
    };

    RecordList(Key key, std::vector<ListColumn> columns, QObject* parent = nullptr);
    ~RecordList() override;

    // Before open; nothing of it shows before the list is read again.
    void setLeading(std::vector<Extra> rows) { m_leading = std::move(rows); } ///< above all records
    void setClosing(std::vector<Extra> rows) { m_closing = std::move(rows); } ///< below them
    void setIcon(std::function<QIcon(const Recordset&)> icon) { m_icon = std::move(icon); }
    void setMuted(std::function<bool(const Recordset&)> muted) { m_muted = std::move(muted); }
    /// Check boxes in the first column. A click calls `change`, which writes and may raise; without it they
    /// only show.
    void setCheck(std::function<bool(const Recordset&)> checked,
                  std::function<void(const QString& key, bool on)> change = {});

    /// Shows another statement: `select` without an order, `order` what stands behind ORDER BY. Raises what
    /// the store raises and then still shows what it showed.
    void open(const QString& select, const QString& order = {});
    void open(const sql::Query& query) { open(query.select, query.order); }
    /// Shows the rows with these keys in this order, whatever finds them: `select` is a statement without a
    /// condition. They are read live, a screen at a time; sorting by a click does nothing. appendKeys shows
    /// more of them.
    void openKeys(const QString& select, const QStringList& keys);
    void appendKeys(const QStringList& keys);
    /// What stands in the list answers another question than the one that is asked by now: shown faintly, and
    /// without keys, so that nothing of it can be chosen. The next opening ends it.
    void setOutdated();
    void reload(); ///< reads the statement again; raises likewise
    void clear();  ///< shows nothing, not even the extra rows
    /// Another row came, or this one looks different: shown behind the last one, or anew. False when it is
    /// gone or does not belong to the list.
    bool refresh(const QString& key);
    void readAll(); ///< the keys of all rows

    [[nodiscard]] QString key(int row) const; ///< "" outside the list
    /// -1 when there is no such row.
    [[nodiscard]] int rowOf(const QString& key);
    /// Stands on the row's record. Raises 3021 for an extra row or one outside the list, 3167 for a deleted
    /// one.
    [[nodiscard]] const Recordset& record(int row) const;
    /// True when rowCount() counts all rows.
    [[nodiscard]] bool isComplete() const { return m_complete; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;
    /// By a column, or by the list's own order for -1.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

  private:
    struct Row {
        QString key;
        QStringList texts;
        QIcon icon;
        bool checked = false, muted = false, gone = false;
    };
    [[nodiscard]] std::unique_ptr<Recordset> read(int& known, bool& complete) const;
    void readStatement();
    void show(std::unique_ptr<Recordset> rs, int known, bool complete);
    void grow(int known);
    [[nodiscard]] const Extra* extra(int row) const;
    [[nodiscard]] const Row& row(int record) const;
    [[nodiscard]] Row format(int record) const;
    [[nodiscard]] Row format(const Recordset& rs) const;
    [[nodiscard]] static Row gone();
    /// Reads the rows of the keys from `record` on as far as one paints ahead.
    void readKeyed(int record) const;
    [[nodiscard]] Type keyType() const;
    /// The key as it stands in a statement, behind the type of its field.
    [[nodiscard]] static QString literal(Type type, const QString& key);
    [[nodiscard]] QString criteria(const QString& key) const;
    /// Runs what a view asks for; a failure is reported from the event loop, since a message box inside of a
    /// paint event would paint again. True when it went through.
    bool guarded(const std::function<void()>& body) const;
    bool paint(const std::function<void()>& body) const; ///< the same, and nothing more after a failure

    Key m_key;
    std::vector<ListColumn> m_columns;
    std::vector<Extra> m_leading, m_closing, m_shownLeading, m_shownClosing;
    std::function<QIcon(const Recordset&)> m_icon;
    std::function<bool(const Recordset&)> m_muted, m_checked;
    std::function<void(const QString&, bool)> m_change;
    QString m_select, m_order;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    std::unique_ptr<Recordset> m_rs;
    std::optional<QStringList> m_keys; ///< of openKeys, without the prefix
    mutable std::optional<Type> m_keyType;
    mutable std::unique_ptr<Recordset> m_single; ///< of record() there
    bool m_outdated = false;
    int m_known = 0; ///< records whose keys are read
    bool m_complete = true;
    mutable bool m_failed = false;
    mutable QCache<int, Row> m_rows; ///< by the place of the record
    QTimer m_idle;
};
