#include <store/Database.h>
#include <store/Transfer.h>

#include <QCryptographicHash>
#include <QLocale>
#include <QtEndian>

#include <bit>
#include <moving/TableSum.h>

using namespace Qt::StringLiterals;

namespace moving {

namespace {

bool sums(Type type) { return type != Type::Text && type != Type::Memo && type != Type::Null; }

/// One column's sum. Whole numbers and money are exact; doubles are added in row order, so that equal rows
/// give equal digits. Money is kept in two parts, since a single amount may fill the range; what no shop
/// reaches wraps around, on both sides alike.
class ColumnTotal {
  public:
    void add(const Value& value) {
        if (const auto* truth = std::get_if<bool>(&value.data()))
            m_whole += *truth ? 1 : 0;
        else if (const auto* whole = std::get_if<qint64>(&value.data()))
            m_whole += static_cast<quint64>(*whole);
        else if (const auto* money = std::get_if<Currency>(&value.data())) {
            m_whole += static_cast<quint64>(money->scaled() / 10000);
            m_part += money->scaled() % 10000;
        } else if (const auto* number = std::get_if<double>(&value.data()))
            m_real += *number;
        else if (const auto* single = std::get_if<float>(&value.data()))
            m_real += double(*single);
        else if (const auto* date = std::get_if<DateTime>(&value.data()))
            m_real += date->days;
    }

    [[nodiscard]] QString text(Type type) const {
        if (type == Type::Single || type == Type::Double || type == Type::Date)
            return QString::number(m_real, 'g', QLocale::FloatingPointShortest).replace(u'.', u',');
        auto whole = static_cast<qint64>(m_whole + static_cast<quint64>(m_part / 10000));
        if (type != Type::Currency) return QString::number(whole);
        qint64 part = m_part % 10000;
        if (whole > 0 && part < 0) {
            --whole;
            part += 10000;
        } else if (whole < 0 && part > 0) {
            ++whole;
            part -= 10000;
        }
        const QString sign = whole < 0 || part < 0 ? u"-"_s : QString();
        return sign + QString::number(std::abs(whole)) + u',' +
               QString::number(std::abs(part)).rightJustified(4, u'0');
    }

  private:
    quint64 m_whole = 0;
    qint64 m_part = 0;
    double m_real = 0;
};

class RowHash {
  public:
    void add(const Value& value) {
        struct Visitor {
            RowHash& hash;
            void operator()(std::monostate) const { hash.mark('n'); }
            void operator()(bool b) const { hash.mark(b ? 'w' : 'f'); }
            void operator()(qint64 i) const { hash.number('i', static_cast<quint64>(i)); }
            // Engines differ in whether they keep the sign of a zero.
            void operator()(double d) const { hash.number('d', std::bit_cast<quint64>(d == 0 ? 0.0 : d)); }
            void operator()(float f) const { (*this)(double(f)); }
            void operator()(Currency c) const { hash.number('c', static_cast<quint64>(c.scaled())); }
            void operator()(DateTime t) const {
                hash.number('t', std::bit_cast<quint64>(t.days == 0 ? 0.0 : t.days));
            }
            void operator()(const QString& s) const {
                const QByteArray bytes = s.toUtf8();
                hash.number('s', static_cast<quint64>(bytes.size()));
                hash.m_hash.addData(bytes);
            }
        };
        std::visit(Visitor{*this}, value.data());
    }
    [[nodiscard]] QByteArray result() const { return m_hash.result(); }

  private:
    void mark(char kind) { m_hash.addData(QByteArrayView(&kind, 1)); }
    void number(char kind, quint64 value) {
        mark(kind);
        const quint64 bytes = qToLittleEndian(value);
        m_hash.addData(QByteArrayView(reinterpret_cast<const char*>(&bytes), sizeof bytes));
    }
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

} // namespace

TableSum sumOf(Database& db, const QString& table, const std::function<void()>& row) {
    TableSum sum;
    RowHash hash;
    std::vector<ColumnTotal> totals;
    store::ReadTable(db, table, [&](const std::vector<Value>& values) {
        totals.resize(values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            hash.add(values[i]);
            totals[i].add(values[i]);
        }
        ++sum.rows;
        if (row) row();
    });
    const TableDef structure = db.FindTableDef(table).value_or(TableDef());
    totals.resize(structure.Fields.size());
    for (std::size_t i = 0; i < totals.size(); ++i)
        if (const TableField& field = structure.Fields[i]; sums(field.Type))
            sum.columns.push_back({field.Name, totals[i].text(field.Type)});
    sum.hash = hash.result();
    return sum;
}

} // namespace moving
