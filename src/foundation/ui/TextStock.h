#pragma once

#include <text/Value.h>
#include <ui/TypedSearch.h>

#include <QByteArray>

#include <array>
#include <span>

/// A row is looked for that meets one of some conditions. Raises 93 for a bad pattern.
class TextQuestion {
  public:
    explicit TextQuestion(std::vector<TextCondition> conditions);

  private:
    friend class TextStock;
    std::vector<TextCondition> m_conditions;
    QByteArray m_part; ///< folded; what every row that is found holds, "" when nothing is known
};

/// The texts of a table in memory, in the order of a statement, folded beside what they are. One pass over
/// the folded ones finds the few rows that the conditions themselves are asked about.
class TextStock {
  public:
    explicit TextStock(int columns = 0)
        : m_columns(columns) {}
    /// The key, then the columns. A Null is found by no pattern.
    void add(std::span<const Value> row);
    void dropLast();
    void clear();

    [[nodiscard]] int rows() const { return static_cast<int>(m_keys.size()); }
    [[nodiscard]] const QString& key(int row) const { return m_keys[row]; }
    [[nodiscard]] qsizetype bytes() const { return m_texts.size() * 2 + m_folded.size(); }
    /// The first row from `row` on that answers the question; rows() for none.
    [[nodiscard]] int next(int row, const TextQuestion& question) const;

  private:
    /// Where `part` stands in m_folded from `from` on; -1 for nowhere.
    [[nodiscard]] qsizetype find(const QByteArray& part, qsizetype from) const;
    [[nodiscard]] bool answers(int row, const TextQuestion& question) const;

    int m_columns;
    QStringList m_keys;
    QString m_texts;
    QByteArray m_folded;                   ///< UTF-8
    std::array<qint64, 256> m_counts{};    ///< how often each byte stands there
    std::vector<qsizetype> m_starts;       ///< of each cell in m_texts
    std::vector<bool> m_nulls;             ///< by cell
    std::vector<qsizetype> m_foldedStarts; ///< of each row in m_folded
};
