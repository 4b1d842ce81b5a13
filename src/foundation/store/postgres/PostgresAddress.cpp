#include "PostgresAddress.h"

#include "PostgresErrors.h"

#include <libpq-fe.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace store {

namespace {
constexpr int usualPatience = 5;
}

PostgresAddress::PostgresAddress(const QString& uri)
    : m_uri(uri.toUtf8()) {
    // The library's own words may quote the URI, password and all, so they are not shown.
    char* words = nullptr;
    const std::unique_ptr<PQconninfoOption, decltype(&PQconninfoFree)> options(
        PQconninfoParse(m_uri.constData(), &words), PQconninfoFree);
    PQfreemem(words);
    if (!options)
        raiseTold(3024, u"Die Adresse des Datenbankservers ist nicht zu lesen. Sie hat die Form "
                        "postgresql://Benutzer@Server:5432/Datenbank."_s);
    for (const PQconninfoOption* option = options.get(); option->keyword; ++option)
        if (option->val) m_options.emplace_back(option->keyword, option->val);
}

QByteArray PostgresAddress::option(const char* name) const {
    for (const auto& [keyword, value] : m_options)
        if (keyword == name) return value;
    return {};
}

QString PostgresAddress::host() const {
    return QString::fromUtf8(option("host").isEmpty() ? option("hostaddr") : option("host"));
}

int PostgresAddress::hosts() const { return 1 + static_cast<int>(host().count(u',')); }

int PostgresAddress::patience() const {
    const int told = option("connect_timeout").toInt();
    return told > 0 ? told : usualPatience;
}

QString PostgresAddress::shown() const {
    if (const QByteArray service = option("service"); !service.isEmpty() && option("host").isEmpty())
        return QString::fromUtf8(service);
    QByteArray text = option("user");
    if (!text.isEmpty()) text += '@';
    text += option("host").isEmpty() ? QByteArray("localhost") : option("host");
    if (!option("dbname").isEmpty()) text += '/' + option("dbname");
    return QString::fromUtf8(text);
}

} // namespace store
