#pragma once

#include <store/Recordset.h>

#include <QStringList>

#include <concepts>
#include <initializer_list>
#include <optional>
#include <variant>
#include <vector>

/// A column that is only ever read, such as an AutoNumber.
struct LoadOnly {};
inline constexpr LoadOnly loadOnly;

/// Which column of a table belongs to which member of a record, in the order of the table. It stands once,
/// beside the record, and serves whoever reads or writes rows.
///
///     const Fields<Person>& PersonFields() {
///         static const Fields<Person> fields{{u"ID", &Person::ID, loadOnly},
///                                            {u"Name", &Person::Name, 50},
///                                            {u"R_Setup", &Rechte::R_Setup}}; // Person derives from Rechte
///         return fields;
///     }
///     load(*rs, PersonFields(), person);
///     rs->Edit();
///     save(*rs, PersonFields(), person);
///     rs->Update();
template <typename Record>
class Fields {
  public:
    using Member = std::variant<QString Record::*, int Record::*, bool Record::*, double Record::*,
                                Currency Record::*, std::optional<DateTime> Record::*>;

    struct Row {
        template <typename Owner, typename T>
        requires std::derived_from<Record, Owner> Row(const char16_t* column_, T Owner::*member_)
            : column(column_)
            , member(std::in_place_type<T Record::*>, member_) {}
        /// A text of more than `cut_` characters loses its end when it is saved.
        template <typename Owner>
        requires std::derived_from<Record, Owner> Row(const char16_t* column_, QString Owner::*member_,
                                                      int cut_)
            : column(column_)
            , member(std::in_place_type<QString Record::*>, member_)
            , cut(cut_) {}
        template <typename Owner, typename T>
        requires std::derived_from<Record, Owner> Row(const char16_t* column_, T Owner::*member_, LoadOnly)
            : Row(column_, member_) {
            saved = false;
        }

        const char16_t* column;
        Member member;
        int cut = 0; ///< 0 for none
        bool saved = true;
    };

    Fields(std::initializer_list<Row> rows)
        : m_rows(rows) {}

    [[nodiscard]] auto begin() const { return m_rows.begin(); }
    [[nodiscard]] auto end() const { return m_rows.end(); }
    [[nodiscard]] QStringList columns() const {
        QStringList names;
        for (const Row& row : m_rows)
            names << QString::fromUtf16(row.column);
        return names;
    }

  private:
    std::vector<Row> m_rows;
};

/// Puts a value of the store into a member; Null becomes its empty value. Raises 13 and 6 as conversions do.
template <typename Record>
void take(Record& record, const typename Fields<Record>::Row& row, const Value& value) {
    const auto put = [&]<typename T>(T Record::*member) {
        T& to = record.*member;
        if (value.isNull())
            to = T();
        else if constexpr (std::same_as<T, QString>)
            to = value.toText();
        else if constexpr (std::same_as<T, int>)
            to = value.toLong();
        else if constexpr (std::same_as<T, bool>)
            to = value.toBool();
        else if constexpr (std::same_as<T, double>)
            to = value.toDouble();
        else if constexpr (std::same_as<T, Currency>)
            to = value.toCurrency();
        else
            to = value.toDate();
    };
    std::visit(put, row.member);
}

/// The member as a value for the store, cut; a missing date is Null.
template <typename Record>
[[nodiscard]] Value give(const Record& record, const typename Fields<Record>::Row& row) {
    const auto get = [&]<typename T>(T Record::*member) -> Value {
        const T& from = record.*member;
        if constexpr (std::same_as<T, QString>)
            return row.cut > 0 ? from.left(row.cut) : from;
        else if constexpr (std::same_as<T, std::optional<DateTime>>)
            return from ? Value(*from) : Value();
        else
            return from;
    };
    return std::visit(get, row.member);
}

/// Reads the current row. What is not in the table of fields stays; an error leaves all of the record as it
/// was. Raises what reading a field and its conversion raise.
template <typename Record>
void load(const Recordset& rs, const Fields<Record>& fields, Record& record) {
    Record loaded = record;
    for (const auto& row : fields)
        take(loaded, row, rs.Field(row.column));
    record = std::move(loaded);
}

/// Puts all but read-only columns into the open edit buffer of `rs`, in the order of the table. Raises what
/// Recordset::Set raises; the buffer then stays open.
template <typename Record>
void save(Recordset& rs, const Fields<Record>& fields, const Record& record) {
    for (const auto& row : fields)
        if (row.saved) rs.Set(row.column, give(record, row));
}
