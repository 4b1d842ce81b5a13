#include "Errors.h"
#include "RecordsetImpl.h"

#include <store/Recordset.h>

Recordset::Recordset(std::unique_ptr<Impl> impl)
    : m_impl(std::move(impl)) {}
Recordset::~Recordset() = default;

bool Recordset::Eof() const { return m_impl->eof(); }
void Recordset::MoveNext() { m_impl->moveNext(); }
void Recordset::MoveFirst() { m_impl->moveFirst(); }
void Recordset::MoveLast() { m_impl->moveLast(); }
int Recordset::AbsolutePosition() { return m_impl->place(); }
void Recordset::AbsolutePosition(int place) { m_impl->moveTo(place); }
int Recordset::RecordCount() const { return m_impl->recordCount(); }

QStringList Recordset::FieldNames() const {
    m_impl->checkOpen();
    QStringList names;
    for (const jet::ResultColumn& column : m_impl->columns())
        names.append(column.name);
    return names;
}

Type Recordset::FieldType(QStringView name) const {
    return m_impl->columns()[m_impl->columnIndex(name)].type;
}

Value Recordset::Field(QStringView name) const { return m_impl->value(m_impl->columnIndex(name)); }

Value Recordset::Field(int index) const {
    m_impl->checkOpen();
    if (index < 0 || static_cast<std::size_t>(index) >= m_impl->columns().size())
        store::raise(3265, QString::number(index));
    return m_impl->value(static_cast<std::size_t>(index));
}

QString Recordset::Text(QStringView name) const {
    const Value value = Field(name);
    return value.isNull() ? QString() : value.toText();
}

int Recordset::Long(QStringView name) const {
    const Value value = Field(name);
    return value.isNull() ? 0 : value.toLong();
}

double Recordset::Number(QStringView name) const {
    const Value value = Field(name);
    return value.isNull() ? 0 : value.toDouble();
}

Currency Recordset::Money(QStringView name) const {
    const Value value = Field(name);
    return value.isNull() ? Currency() : value.toCurrency();
}

bool Recordset::Flag(QStringView name) const {
    const Value value = Field(name);
    return !value.isNull() && value.toBool();
}

std::optional<DateTime> Recordset::Date(QStringView name) const {
    const Value value = Field(name);
    if (value.isNull()) return std::nullopt;
    return value.toDate();
}

void Recordset::AddNew() { m_impl->addNew(); }
void Recordset::Edit() { m_impl->edit(); }
void Recordset::Set(QStringView name, const Value& value) { m_impl->set(name, value); }
void Recordset::Update() { m_impl->update(); }
void Recordset::CancelUpdate() { m_impl->cancelUpdate(); }
bool Recordset::Editing() const { return m_impl->editing(); }
void Recordset::Delete() { m_impl->remove(); }

void Recordset::FindFirst(const QString& Criteria) { m_impl->findFirst(Criteria); }
bool Recordset::NoMatch() const { return m_impl->noMatch(); }
void Recordset::MoveToLastModified() { m_impl->moveToLastModified(); }
void Recordset::Requery() { m_impl->requery(); }
void Recordset::Close() { m_impl->close(); }
