#include "Engine.h"

#include "Errors.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace store {

const jet::Column* TableDefinition::autoNumber() const {
    for (const jet::Column& column : table.columns)
        if (column.autoNumber) return &column;
    return nullptr;
}

void Engine::runTogether(std::span<Prepared* const> statements) {
    const bool own = !inTransaction();
    if (own) begin();
    try {
        for (Prepared* statement : statements)
            for (Running running(*statement); running.step();) {
            }
        if (own) commit();
    } catch (...) {
        if (own) rollback();
        throw;
    }
}

bool IndexDefinition::covers(QStringView column) const {
    return std::any_of(columns.begin(), columns.end(), [&](const auto& part) {
        return column.compare(part.first, Qt::CaseInsensitive) == 0;
    });
}

void Engine::saveCopy(const QString&) { raise(3251); }

QByteArray quoted(QStringView name) {
    QByteArray text = name.toUtf8();
    text.replace('"', "\"\"");
    return '"' + text + '"';
}

namespace {
constexpr std::array names{u"Null",   u"Boolean",  u"Byte", u"Short", u"Long", u"Single",
                           u"Double", u"Currency", u"Date", u"Text",  u"Memo"};
}

QString typeName(Type type) { return QString::fromUtf16(names.at(static_cast<std::size_t>(type))); }

Type typeNamed(QStringView name) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (name == QStringView(names[i])) return static_cast<Type>(i);
    return Type::Null;
}

} // namespace store
