#include <support/TestStore.h>

#include <QDir>
#include <QFile>
#include <QUuid>

#include <libpq-fe.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QString server() { return qEnvironmentVariable("MERIVANE_TEST_STORE"); }

} // namespace

TestStore::TestStore() {
    if (!m_folder.isValid()) throw std::runtime_error("no folder for the test");
    if (!onServer()) {
        m_name = m_folder.filePath(u"Merivane.mdb"_s);
        return;
    }
    m_schema = u"test_"_s + QUuid::createUuid().toString(QUuid::Id128);
    m_name = server() + (server().contains(u'?') ? u'&' : u'?') + u"options=-csearch_path%3D"_s + m_schema;
}

TestStore::~TestStore() { clear(); }

bool TestStore::onServer() { return !server().isEmpty(); }

void TestStore::clear() const {
    if (!onServer()) {
        QFile::remove(m_name);
        return;
    }
    PGconn* connection = PQconnectdb(server().toUtf8().constData());
    PQsetNoticeProcessor(
        connection, [](void*, const char*) {}, nullptr);
    PQclear(PQexec(connection, ("DROP SCHEMA IF EXISTS " + m_schema.toLatin1() + " CASCADE").constData()));
    PQfinish(connection);
}
