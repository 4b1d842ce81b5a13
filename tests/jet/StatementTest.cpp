#include "Cases.h"

#include <jet/Functions.h>
#include <jet/Translator.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <support/TestStore.h>
#include <text/RuntimeError.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QStringList answerOf(Database& db, const QString& statement) {
    QStringList answer;
    try {
        const bool asks = statement.startsWith(u"SELECT", Qt::CaseInsensitive) ||
                          statement.startsWith(u"TRANSFORM", Qt::CaseInsensitive) ||
                          statement.startsWith(u'(');
        if (!asks || statement.contains(u" INTO ")) return {u"= "_s + QString::number(db.Execute(statement))};
        const auto rows = db.OpenRecordset(statement);
        const int columns = int(rows->FieldNames().size());
        for (; !rows->Eof(); rows->MoveNext()) {
            QStringList row;
            for (int i = 0; i < columns; ++i)
                row += cases::shown(rows->Field(i));
            answer.push_back((u"| "_s + row.join(u" | "_s)).trimmed());
        }
    } catch (const RuntimeError& e) {
        return {u"! "_s + QString::number(e.Number) + u' ' + QString::number(e.Place)};
    }
    return answer;
}

QDateTime fixedNow() { return {QDate(2026, 11, 22), QTime(14, 30)}; }

class Statements : public testing::TestWithParam<QString> {
  protected:
    void SetUp() override {
        jet::setClock(fixedNow);
        db = Database::CreateDatabase(TestStore::onServer() ? place.name() : u":memory:"_s);
        for (const cases::Case& c : cases::read(u"shop.sql"_s))
            db->Execute(c.statement);
    }
    void TearDown() override { jet::setClock(nullptr); }

    TestStore place;
    std::unique_ptr<Database> db;
    std::vector<cases::Case> m_cases = cases::read(GetParam() + u".txt"_s);
};

TEST_P(Statements, AnswerAsWritten) {
    for (const cases::Case& c : m_cases)
        EXPECT_EQ(answerOf(*db, c.statement).join(u'\n').toStdString(), c.answer.join(u'\n').toStdString())
            << qPrintable(GetParam()) << " line " << c.line << ": " << qPrintable(c.statement);
}

// Printed from the tree they answer alike; only the places of errors are others.
TEST_P(Statements, AnswerAlikePrinted) {
    for (const cases::Case& c : m_cases) {
        QString printed;
        try {
            printed = jet::printed(c.statement);
        } catch (const RuntimeError&) {
            continue;
        }
        const QString got = answerOf(*db, printed).join(u'\n'), due = c.answer.join(u'\n');
        if (due.startsWith(u'!'))
            EXPECT_EQ(got.section(u' ', 0, 1).toStdString(), due.section(u' ', 0, 1).toStdString())
                << qPrintable(printed);
        else
            EXPECT_EQ(got.toStdString(), due.toStdString()) << qPrintable(printed);
    }
}

INSTANTIATE_TEST_SUITE_P(Dialect, Statements,
                         testing::Values(u"expressions"_s, u"functions"_s, u"queries"_s, u"changes"_s,
                                         u"errors"_s),
                         [](const auto& test) { return test.param.toStdString(); });

} // namespace
