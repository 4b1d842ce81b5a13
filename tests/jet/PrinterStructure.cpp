#include "Printer.h"

using namespace Qt::StringLiterals;

namespace jet {

void Printer::columnNames(const std::vector<QString>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        m_out += i ? u", " : u"(";
        name(names[i]);
    }
    m_out += u')';
}

void Printer::index(const Ddl::Index& index) {
    if (!index.name.isEmpty()) {
        m_out += u"CONSTRAINT ";
        name(index.name);
        m_out += u' ';
    }
    m_out += index.primary ? u"PRIMARY KEY " : u"UNIQUE ";
    columnNames(index.columns);
}

void Printer::column(const Column& c) {
    name(c.name);
    m_out += u' ';
    switch (c.type) {
    case Type::Boolean:
        m_out += u"YESNO";
        break;
    case Type::Byte:
        m_out += u"BYTE";
        break;
    case Type::Short:
        m_out += u"SHORT";
        break;
    case Type::Long:
        m_out += c.autoNumber ? u"COUNTER" : u"LONG";
        break;
    case Type::Single:
        m_out += u"SINGLE";
        break;
    case Type::Double:
        m_out += u"DOUBLE";
        break;
    case Type::Currency:
        m_out += u"CURRENCY";
        break;
    case Type::Date:
        m_out += u"DATETIME";
        break;
    case Type::Text:
        m_out += u"TEXT("_s + QString::number(c.size) + u')';
        break;
    case Type::Memo:
    case Type::Null:
        m_out += u"MEMO";
        break;
    }
    if (c.required) m_out += u" NOT NULL";
    if (!c.defaultText.isEmpty()) m_out += u" DEFAULT "_s + c.defaultText;
}

void Printer::structure() {
    const Ddl& ddl = m_tree.ddl;
    auto columns = [&](bool indexes) {
        bool first = true;
        auto comma = [&] {
            if (!first) m_out += u", ";
            first = false;
        };
        for (const Column& c : ddl.add) {
            comma();
            column(c);
        }
        if (!indexes) return;
        for (const Ddl::Index& i : ddl.indexes) {
            comma();
            index(i);
        }
    };
    switch (m_tree.kind) {
    case Kind::CreateTable:
        m_out += u"CREATE TABLE ";
        name(ddl.table);
        m_out += u" (";
        columns(true);
        m_out += u')';
        return;
    case Kind::DropTable:
        m_out += u"DROP TABLE ";
        return name(ddl.table);
    case Kind::DropIndex:
        m_out += u"DROP INDEX ";
        name(ddl.indexName);
        m_out += u" ON ";
        return name(ddl.table);
    case Kind::CreateIndex:
        m_out += ddl.unique && !ddl.primary ? u"CREATE UNIQUE INDEX " : u"CREATE INDEX ";
        name(ddl.indexName);
        m_out += u" ON ";
        name(ddl.table);
        for (std::size_t i = 0; i < ddl.indexColumns.size(); ++i) {
            m_out += i ? u", " : u" (";
            name(ddl.indexColumns[i].first);
            if (ddl.indexColumns[i].second) m_out += u" DESC";
        }
        m_out += u')';
        if (ddl.primary) m_out += u" WITH PRIMARY";
        return;
    default:
        break;
    }
    m_out += u"ALTER TABLE ";
    name(ddl.table);
    if (ddl.alterColumn) {
        m_out += u" ALTER COLUMN ";
        columns(false);
    } else if (!ddl.add.empty()) {
        m_out += u" ADD COLUMN ";
        columns(false);
    } else if (!ddl.indexes.empty()) {
        m_out += u" ADD ";
        index(ddl.indexes.front());
    } else if (!ddl.indexName.isEmpty()) {
        m_out += u" DROP CONSTRAINT ";
        name(ddl.indexName);
    } else {
        m_out += u" DROP COLUMN ";
        for (std::size_t i = 0; i < ddl.drop.size(); ++i) {
            if (i) m_out += u", ";
            name(ddl.drop[i]);
        }
    }
}

} // namespace jet
