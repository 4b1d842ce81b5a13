#include "FunctionSamples.h"

#include <jet/Functions.h>
#include <store/Database.h>
#include <store/Recordset.h>
#include <support/TestStore.h>
#include <text/RuntimeError.h>
#include <text/Sort.h>

#include <QElapsedTimer>

#include <cmath>
#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <map>
#include <numeric>

using namespace Qt::StringLiterals;

// The functions of the dialect answer the same on the server as here: values, types and error numbers.

namespace {

using Rows = std::vector<std::vector<std::optional<QString>>>;

/// A store on the server and a plain connection to it.
class ServerFunctions : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(TestStore::onServer()) << "MERIVANE_TEST_STORE must name a server";
        s_place = std::make_unique<TestStore>();
        Database::CreateDatabase(s_place->name())->Close();
        s_server = PQconnectdb(s_place->name().toUtf8().constData());
        ASSERT_EQ(PQstatus(s_server), CONNECTION_OK) << PQerrorMessage(s_server);
        query(u"SET client_min_messages = error"_s);
        // One expression after the other, each with its error: its type, its value, or the state.
        query(uR"(CREATE FUNCTION attempt(expression text) RETURNS text LANGUAGE plpgsql AS $$
            DECLARE answer text;
            BEGIN
              EXECUTE 'SELECT pg_typeof(v)::text || '':'' || coalesce(v::text, ''NULL'') FROM (SELECT ' || expression ||
                      ' AS v) AS s' INTO answer;
              RETURN answer;
            EXCEPTION WHEN others THEN
              RETURN 'error:' || SQLSTATE || ':' || SQLERRM;
            END $$)"_s);
    }
    static void TearDownTestSuite() {
        PQfinish(s_server);
        s_server = nullptr;
        s_place.reset();
    }
    void SetUp() override { ASSERT_NE(s_server, nullptr); }
    static const TestStore& place() { return *s_place; }

    static Rows query(const QString& sql, const QString& parameter = {}) {
        const QByteArray value = parameter.toUtf8();
        const char* const values[] = {value.constData()};
        PGresult* const result = PQexecParams(s_server, sql.toUtf8().constData(), parameter.isNull() ? 0 : 1,
                                              nullptr, values, nullptr, nullptr, 0);
        EXPECT_TRUE(PQresultStatus(result) == PGRES_TUPLES_OK || PQresultStatus(result) == PGRES_COMMAND_OK)
            << PQresultErrorMessage(result);
        Rows rows(static_cast<std::size_t>(PQntuples(result)));
        for (int r = 0; r < PQntuples(result); ++r)
            for (int c = 0; c < PQnfields(result); ++c)
                rows[static_cast<std::size_t>(r)].push_back(
                    PQgetisnull(result, r, c) ? std::optional<QString>()
                                              : QString::fromUtf8(PQgetvalue(result, r, c)));
        PQclear(result);
        return rows;
    }

    static QStringList attempt(const QStringList& expressions) {
        QStringList quoted;
        for (const QString& e : expressions)
            quoted.append(samples::quotedElement(e));
        QStringList answers;
        for (const auto& row :
             query(u"SELECT attempt(e) FROM unnest($1::text[]) WITH ORDINALITY AS u(e, n) ORDER BY n"_s,
                   u'{' + quoted.join(u',') + u'}'))
            answers.append(row[0].value_or(u"?"_s));
        return answers;
    }

  private:
    static inline std::unique_ptr<TestStore> s_place;
    static inline PGconn* s_server = nullptr;
};

int errorNumber(const QString& state) {
    static const std::map<QString, int> own = {{u"22012"_s, 11}, {u"22003"_s, 6}, {u"22008"_s, 6}};
    if (state.startsWith(u'J')) return state.mid(1).toInt();
    const auto found = own.find(state);
    return found == own.end() ? -1 : found->second;
}

/// What a call answers here, as the server would tell it.
struct Answer {
    QString type;  ///< empty: of no matter
    QString value; ///< or the number of the error
    std::optional<double> number;

    static Answer of(const jet::Function& function, const std::vector<Value>& arguments) {
        try {
            const Value v = function.call(arguments);
            struct Visitor {
                Answer operator()(std::monostate) const { return {{}, u"NULL"_s, {}}; }
                Answer operator()(bool b) const { return {u"boolean"_s, b ? u"true"_s : u"false"_s, {}}; }
                Answer operator()(qint64 i) const { return {u"bigint"_s, QString::number(i), {}}; }
                Answer operator()(double d) const {
                    return {u"double precision"_s, QString::number(d, 'g', 17), d};
                }
                Answer operator()(Currency c) const { return {u"numeric"_s, Value(c).toText(), {}}; }
                Answer operator()(DateTime t) const { return (*this)(t.days); }
                Answer operator()(const QString& s) const {
                    // As it travels: half a character is none.
                    return {u"text"_s, QString::fromUtf8(s.toUtf8()), {}};
                }
            };
            return std::visit(Visitor{}, v.data());
        } catch (const RuntimeError& error) {
            return {u"error"_s, QString::number(error.Number), {}};
        }
    }

    /// `slack` is how far doubles may lie apart, relative to their size.
    [[nodiscard]] bool agrees(const QString& told, double slack) const {
        const qsizetype colon = told.indexOf(u':');
        const QString kind = told.left(colon);
        QString text = told.mid(colon + 1);
        if (kind == u"error")
            return type == u"error" && errorNumber(text.section(u':', 0, 0)) == value.toInt();
        if (value == u"NULL" && type.isEmpty()) return text == u"NULL";
        if (kind != type) return false;
        if (type == u"numeric") {
            if (text.contains(u'.')) {
                while (text.endsWith(u'0'))
                    text.chop(1);
                if (text.endsWith(u'.')) text.chop(1);
            }
            return text.replace(u'.', u',') == value;
        }
        if (!number) return text == value;
        const double other =
            text.contains(u"Infinity") ? (text.startsWith(u'-') ? -HUGE_VAL : HUGE_VAL) : text.toDouble();
        return other == *number || std::abs(other - *number) <= slack * std::abs(*number);
    }
};

struct Case {
    const char* function;
    std::vector<QByteArray> arguments; ///< letters of the samples, one text for each count of arguments
    int times = 300;
    double slack = 0;
};

const std::vector<Case>& cases() {
    constexpr double rounded = 1e-13; ///< where the order of operations is the server's own
    static const std::vector<Case> list = {
        {"jet_tobool", {"v"}, 1500},
        {"jet_tobyte", {"v"}, 1500},
        {"jet_toshort", {"v"}, 1500},
        {"jet_tolong", {"v"}, 3000},
        {"jet_todouble", {"v"}, 3000},
        {"jet_tocurrency", {"v"}, 3000},
        {"jet_todate", {"v", "a"}, 3000},
        {"jet_totext", {"v"}, 3000},
        {"jet_intdivide", {"vv"}, 1500},
        {"jet_mod", {"vv"}, 1500},
        {"jet_power", {"mm"}, 600},
        {"jet_multiply", {"mm"}, 1000},
        {"jet_divide", {"mm"}, 400},
        {"jet_like", {"wp"}, 4000},
        {"jet_alike", {"wp"}, 600},
        {"jet_cbool", {"v"}},
        {"jet_cbyte", {"v"}},
        {"jet_cint", {"v"}},
        {"jet_clng", {"v"}},
        {"jet_cdbl", {"v"}},
        {"jet_csng", {"v"}, 600},
        {"jet_ccur", {"v"}},
        {"jet_cdate", {"v"}},
        {"jet_cstr", {"v"}},
        {"jet_val", {"v"}, 2000},
        {"jet_str", {"v"}, 2000},
        {"jet_hex", {"v"}},
        {"jet_oct", {"v"}},
        {"jet_isnumeric", {"v"}, 2000},
        {"jet_isdate", {"v", "a"}, 1500},
        {"jet_typename", {"v"}},
        {"jet_format", {"v", "vf", "xf", "ag", "vg", "tg", "tgkk"}, 3000},
        {"jet_left", {"wk", "vk"}},
        {"jet_right", {"wk"}},
        {"jet_mid", {"wk", "wkk"}},
        {"jet_instr", {"ww", "kww", "kwwk"}, 800},
        {"jet_instrrev", {"ww", "wwk", "wwkk"}, 800},
        {"jet_replace", {"www", "wwwk", "wwwkk", "wwwkkk"}, 800},
        {"jet_strcomp", {"ww", "wwk"}, 1500},
        {"jet_strconv", {"wk", "wkk"}, 600},
        {"jet_strreverse", {"w"}},
        {"jet_string", {"kw", "kc", "kv"}},
        {"jet_space", {"k"}},
        {"jet_ucase", {"w"}, 600},
        {"jet_lcase", {"w"}, 600},
        {"jet_asc", {"w"}},
        {"jet_ascw", {"w"}},
        {"jet_chr", {"c"}},
        {"jet_chrw", {"c"}},
        {"jet_partition", {"kkkk"}, 600},
        {"jet_int", {"v"}},
        {"jet_fix", {"v"}},
        {"jet_sgn", {"v"}},
        {"jet_round", {"v", "vk", "mk"}, 2000},
        {"jet_sqr", {"m"}},
        {"jet_exp", {"m"}, 300, rounded},
        {"jet_log", {"m"}, 300, rounded},
        {"jet_sin", {"k"}, 100, rounded},
        {"jet_cos", {"k"}, 100, rounded},
        {"jet_tan", {"k"}, 100, rounded},
        {"jet_atn", {"m"}, 200, rounded},
        {"jet_year", {"t"}},
        {"jet_month", {"t"}},
        {"jet_day", {"t"}},
        {"jet_hour", {"t"}},
        {"jet_minute", {"t"}},
        {"jet_second", {"t"}},
        {"jet_weekday", {"t", "tk"}},
        {"jet_monthname", {"k", "kk"}},
        {"jet_weekdayname", {"k", "kk", "kkk"}},
        {"jet_dateserial", {"ykk"}, 1500},
        {"jet_timeserial", {"kkk", "yyy"}},
        {"jet_datevalue", {"v", "a"}},
        {"jet_timevalue", {"v", "a"}},
        {"jet_dateadd", {"ikt", "imt"}, 2000},
        {"jet_datediff", {"itt", "ittk", "ittkk"}, 1500},
        {"jet_datepart", {"it", "itk", "itkk"}, 1500},
        {"jet_sln", {"qqq"}, 300, rounded},
        {"jet_syd", {"qqqq"}, 300, rounded},
        {"jet_ddb", {"qqqq", "qqqqq"}, 300, rounded},
        {"jet_fv", {"rqq", "rqqq", "rqqqk"}, 300, 1e-10},
        {"jet_pv", {"rqq", "rqqq", "rqqqk"}, 300, 1e-10},
        {"jet_pmt", {"rqq", "rqqq", "rqqqk"}, 300, 1e-10},
        {"jet_nper", {"rqq", "rqqq", "rqqqk"}, 300, 1e-10},
    };
    return list;
}

} // namespace

TEST_F(ServerFunctions, AnswerAsHere) {
    std::map<QByteArray, const jet::Function*> functions;
    for (const jet::Function& f : jet::functions())
        functions[f.name] = &f;
    samples::Samples pool(20261123);
    int total = 0;
    for (const Case& c : cases()) {
        const jet::Function& function = *functions.at(c.function);
        functions.erase(c.function);
        std::vector<std::vector<Value>> tuples;
        QStringList expressions;
        for (int i = 0; i < c.times; ++i) {
            const QByteArray& letters = c.arguments[static_cast<std::size_t>(i) % c.arguments.size()];
            std::vector<Value> arguments;
            for (const char letter : letters)
                arguments.push_back(pool.value(letter));
            expressions.append(samples::callOf(c.function, arguments));
            tuples.push_back(std::move(arguments));
        }
        const QStringList answers = attempt(expressions);
        ASSERT_EQ(answers.size(), expressions.size());
        int shown = 0;
        for (qsizetype i = 0; i < answers.size(); ++i) {
            Answer due = Answer::of(function, tuples[static_cast<std::size_t>(i)]);
            if (QByteArray(c.function).endsWith("like") && due.type == u"bigint")
                due = {u"boolean"_s, due.value == u"1" ? u"true"_s : u"false"_s, {}};
            // The server has no character 0.
            if (due.type == u"text" && due.value.contains(QChar(0))) due = {u"error"_s, u"5"_s, {}};
            ++total;
            // Where several things are wrong, or one is Null, the server may tell another first.
            const auto& arguments = tuples[static_cast<std::size_t>(i)];
            if (arguments.size() > 1 && answers[i].startsWith(u"error:J") &&
                samples::misfits(c.function, arguments))
                continue;
            if (due.agrees(answers[i], c.slack) || ++shown > 5) continue;
            ADD_FAILURE() << expressions[i].toStdString() << "\n  here: " << due.type.toStdString() << ':'
                          << due.value.toStdString() << "\n  there: " << answers[i].toStdString();
        }
        EXPECT_EQ(shown, 0) << c.function << ": answers that differ, of " << answers.size();
    }
    EXPECT_GT(total, 50000);
    // Neither asked of the server: the value itself, and what the till's own clock tells.
    for (const char* name : {"jet_cvar", "jet_now", "jet_date", "jet_time", "jet_timer", "jet_rnd"})
        functions.erase(name);
    for (const auto& [name, function] : functions)
        ADD_FAILURE() << name.toStdString() << " is compared nowhere";
}

TEST_F(ServerFunctions, TellWhatIsWrongInGerman) {
    EXPECT_EQ(
        attempt({u"jet_left('a', -1)"_s, u"jet_tolong('x'::text)"_s, u"jet_like('a', '[z-a]')"_s,
                 u"jet_like('a', '[')"_s}),
        QStringList({u"error:J0005:Ungültiger Prozeduraufruf oder ungültiges Argument"_s,
                     u"error:J0013:Typen unverträglich"_s,
                     u"error:J0093:Ungültige Musterzeichenfolge: Bereich läuft rückwärts"_s,
                     u"error:J0093:Ungültige Musterzeichenfolge: zu [ fehlt die schließende Klammer"_s}));
}

// A failure belongs to a row: without rows there is none, whatever the planner can compute before.
TEST_F(ServerFunctions, FailOnlyForRows) {
    query(u"CREATE TABLE nothing (t text, x double precision, i bigint)"_s);
    QStringList calls;
    for (const QString& call :
         {u"jet_left(t, -1)"_s, u"jet_mid(t, 0)"_s, u"jet_round(x, -1)"_s, u"jet_intdivide(i, 0::bigint)"_s,
          u"jet_strcomp(t, t, 9)"_s, u"jet_weekday(x, 9)"_s, u"jet_string(-1, t)"_s, u"jet_todate(t)"_s})
        calls.append(u"(SELECT "_s + call + u" FROM nothing)"_s);
    for (const QString& answer : attempt(calls))
        EXPECT_TRUE(answer.endsWith(u":NULL")) << answer.toStdString();
}

TEST_F(ServerFunctions, GiveTheSameRowOfRandomNumbers) {
    const jet::Function* rnd = nullptr;
    for (const jet::Function& f : jet::functions())
        if (f.name == "jet_rnd") rnd = &f;
    ASSERT_NE(rnd, nullptr);
    const double numbers[] = {-7, 1, 1, 0, 5, -0.25, 0, 1, -1e300, 2};
    QStringList calls;
    for (const double n : numbers)
        calls.append(u"jet_rnd('%1'::double precision)"_s.arg(n));
    const QStringList answers = attempt(calls);
    for (std::size_t i = 0; i < std::size(numbers); ++i) {
        const Value argument(numbers[i]);
        EXPECT_TRUE(Answer::of(*rnd, {argument}).agrees(answers[static_cast<qsizetype>(i)], 0)) << numbers[i];
    }
}

TEST_F(ServerFunctions, SortAsHere) {
    QStringList texts;
    for (char16_t c = 1; c < 0x180; ++c)
        texts.append(QString(QChar(c)));
    for (const char16_t* word :
         {u"",        u"Apfel",  u"apfel",    u"Äpfel",  u"Apfel 2", u"Apfel-2", u"Apfelkuchen",
          u"Strasse", u"Straße", u"STRASSEN", u"Muller", u"Müller",  u"Mueller", u"Mu\u0308ller",
          u"ab",      u"a b",    u"a-b",      u"Ab",     u"ÄB",      u"m²",      u"m2",
          u"10",      u"9",      u"œuvre",    u"oeuvre", u"Ærø",     u"a\uFFFF", u"ł",
          u"l·l",     u"Жук",    u"жук",      u"字"})
        texts.append(QStringView(word).toString());
    // The rank of each text counts those before it, on both sides.
    std::vector<qsizetype> order(static_cast<std::size_t>(texts.size()));
    std::iota(order.begin(), order.end(), 0);
    const auto compare = [&](qsizetype a, qsizetype b) { return CompareText(texts[a], texts[b]); };
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return compare(a, b) < 0; });
    QStringList quoted;
    for (const QString& text : texts)
        quoted.append(samples::quotedElement(text));
    const Rows rows = query(uR"(SELECT n, rank() OVER (ORDER BY t COLLATE merivane) FROM unnest($1::text[])
                                WITH ORDINALITY AS u(t, n) ORDER BY t COLLATE merivane, n)"_s,
                            u'{' + quoted.join(u',') + u'}');
    ASSERT_EQ(rows.size(), order.size());
    std::size_t rank = 1;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && compare(order[i - 1], order[i]) != 0) rank = i + 1;
        EXPECT_EQ(rows[i][0]->toLongLong() - 1, order[i]) << "place " << i;
        EXPECT_EQ(rows[i][1]->toULongLong(), rank) << texts[order[i]].toStdString();
    }
}

// The time grows with the length, not with its square.
TEST_F(ServerFunctions, FormatLongTexts) {
    QElapsedTimer clock;
    clock.start();
    for (const QString& pattern : {u"'@'"_s, u"'0'"_s, u"'d'"_s, u"'x'"_s, u"'\'"_s})
        EXPECT_EQ(query(u"SELECT length(jet_format(repeat('ä', 100000), repeat(%1, 100000))), "
                        "length(jet_format(5::bigint, repeat(%1, 50000) || '0'))"_s.arg(pattern))
                      .size(),
                  1u);
    EXPECT_LT(clock.elapsed(), 30000) << "squared it takes minutes";
}

TEST_F(ServerFunctions, MakeDatesReadable) {
    EXPECT_EQ(
        query(u"SELECT store_timestamp(46348.604166666664), store_timestamp(-1.25), store_timestamp(NULL)"_s),
        (Rows{{u"2026-11-22 14:30:00"_s, u"1899-12-29 06:00:00"_s, std::nullopt}}));
}

TEST_F(ServerFunctions, AreReplacedByThoseOfANewerProgram) {
    query(u"CREATE OR REPLACE FUNCTION jet_ucase(t text) RETURNS text LANGUAGE sql AS $$ SELECT 'old' $$"_s);
    const auto answer = [&] {
        const auto db = Database::OpenDatabase(place().name());
        const auto rs = db->OpenRecordset(u"SELECT UCase('a') AS a"_s);
        return rs->Text(u"a");
    };
    EXPECT_EQ(answer(), u"old") << "the version is the same";
    query(u"UPDATE \"merivane$settings\" SET \"value\" = '0' WHERE \"key\" = 'functions'"_s);
    EXPECT_EQ(answer(), u"A");
}
