#include <session/CSystem.h>
#include <session/Globals.h>
#include <session/gUser.h>
#include <store/Recordset.h>
#include <store/Schema.h>
#include <support/TempShop.h>

#include <QDir>

using namespace Qt::StringLiterals;

TempShop::TempShop(const QString& server)
    : m_store(server.isEmpty() ? m_place.name() : server) {
    qputenv("MERIVANE_MASCHINE", "KASSE-1");
    ResetSession();
    gSystem = std::make_unique<CSystem>();
    gAppPath = gDBPath = m_place.folder() + QDir::separator();
    setIni(u"GLOBAL"_s, u"DBPath"_s, m_place.folder());
    if (!server.isEmpty()) setIni(u"GLOBAL"_s, u"DBServer"_s, server);
    Database::CreateDatabase(storePath())->Close();
    reopen();
    schema::createTables(*gDB);
}

TempShop::~TempShop() {
    gDB.reset();
    ResetSession();
}

QString TempShop::folder() const { return m_place.folder() + QDir::separator(); }
QString TempShop::storePath() const { return m_store; }
Database& TempShop::db() const { return *gDB; }

void TempShop::reopen() {
    gDB.reset();
    gDB = Database::OpenDatabase(storePath());
}

int TempShop::insert(const QString& table, const Fields& fields) {
    const auto rs = gDB->OpenRecordset(u"SELECT * FROM "_s + table + u" WHERE 1=0;"_s);
    rs->AddNew();
    for (const auto& [name, value] : fields)
        rs->Set(name, value);
    int id = 0;
    if (const auto def = gDB->FindTableDef(table)) {
        for (const TableField& field : def->Fields) {
            if (field.Attributes & 16) id = rs->Long(field.Name);
        }
    }
    rs->Update();
    return id;
}

namespace {
TempShop::Fields merged(TempShop::Fields base, const TempShop::Fields& more) {
    for (const auto& field : more) {
        const auto same = [&](const auto& f) {
            return f.first.compare(field.first, Qt::CaseInsensitive) == 0;
        };
        const auto found = std::find_if(base.begin(), base.end(), same);
        if (found == base.end())
            base.push_back(field);
        else
            found->second = field.second;
    }
    return base;
}
} // namespace

int TempShop::article(const QString& number, const QString& name, double price, const Fields& more) {
    return insert(u"Artikel"_s, merged({{u"Nummer"_s, number},
                                        {u"Name"_s, name},
                                        {u"VKPreis"_s, Currency::fromDouble(price)},
                                        {u"SteuerSatz"_s, 7},
                                        {u"Menge"_s, 1},
                                        {u"Einheit"_s, u"Stück"_s},
                                        {u"Rabatt"_s, true},
                                        {u"Aktiv"_s, true}},
                                       more));
}

int TempShop::person(const QString& firstName, const QString& name, const QString& pin, const Fields& more) {
    Fields fields = {{u"Vorname"_s, firstName}, {u"Name"_s, name}, {u"PIN"_s, pin}, {u"Gesperrt"_s, false}};
    for (const auto* right : {u"R_Artikel", u"R_Kunden", u"R_Personal", u"R_Berichte", u"R_Rabatt",
                              u"R_Setup", u"R_KassenAbschluss", u"R_RechnungEdit", u"R_SystemExit"})
        fields.emplace_back(QString::fromUtf16(right), true);
    return insert(u"Personal"_s, merged(std::move(fields), more));
}

int TempShop::count(const QString& tableOrQuery) const {
    const bool query = tableOrQuery.startsWith(u"SELECT "_s, Qt::CaseInsensitive);
    const auto rs = gDB->OpenRecordset(query ? tableOrQuery : u"SELECT * FROM "_s + tableOrQuery);
    int rows = 0;
    for (; !rs->Eof(); rs->MoveNext())
        ++rows;
    return rows;
}

Value TempShop::value(const QString& query) const {
    const auto rs = gDB->OpenRecordset(query);
    return rs->Eof() ? Value() : rs->Field(0);
}

QStringList TempShop::rows(const QString& query) const {
    QStringList lines;
    const auto rs = gDB->OpenRecordset(query);
    const auto columns = static_cast<int>(rs->FieldNames().size());
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList cells;
        for (int i = 0; i < columns; ++i) {
            const Value cell = rs->Field(i);
            cells << (cell.isNull() ? u"Null"_s : cell.toText());
        }
        lines << cells.join(u'|');
    }
    return lines;
}

void TempShop::setIni(const QString& section, const QString& key, const QString& value) {
    gSystem->WriteProfileString(section, key, value, KonfigIni());
}

QString TempShop::ini(const QString& section, const QString& key) const {
    return gSystem->ReadProfileString(section, key, KonfigIni());
}
