#include "Connection.h"

#include "ColumnValue.h"
#include "Engines.h"
#include "Errors.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace store {

Connection::Connection(std::unique_ptr<Engine> engine)
    : m_engine(std::move(engine)) {
    m_translator = std::make_unique<jet::Translator>(m_catalogue, m_engine->emitter());
    m_translator->setPivotHeads([this](const jet::Statement& statement, const std::vector<Value>& literals) {
        return pivotHeads(statement, literals);
    });
    refreshStructure();
}

Connection::~Connection() { close(); }

void Connection::close() noexcept {
    m_plans.clear();
    if (m_engine) m_engine->close();
    m_engine.reset();
}

Engine& Connection::engine() const {
    if (!m_engine) raise(3420);
    return *m_engine;
}

std::shared_ptr<Plan> Connection::plan(const QString& sql, std::vector<Value>& literals) {
    if (!m_engine) raise(3420);
    noticeChange();
    jet::lift(sql, m_lifted);
    literals.swap(m_lifted.literals);
    if (const auto* cached = m_plans.object(m_lifted.shape)) return *cached;

    const QString shape = m_lifted.shape;
    refreshStructure();
    auto plan = std::make_shared<Plan>();
    plan->statement = m_translator->translate(sql);
    plan->generation = m_generation;
    for (const QString& table : plan->statement->tables)
        plan->changes.push_back(changesOf(table));
    if (const auto& dynaset = plan->statement->dynaset) {
        plan->base = m_catalogue.share(dynaset->table);
        if (!plan->base) raise(3376, dynaset->table);
        for (const jet::ResultColumn& column : plan->statement->columns)
            plan->baseColumns.push_back(column.column.isEmpty() ? -1
                                                                : plan->base->table.indexOf(column.column));
        plan->rowHasLiterals = dynaset->columnsBind;
    }
    if (plan->statement->reusable && !plan->statement->ddl)
        m_plans.insert(shape, new std::shared_ptr<Plan>(plan), 1 + static_cast<int>(shape.size() / 4096));
    return plan;
}

std::shared_ptr<Plan> Connection::findPlan(Plan& dynaset, std::size_t dynasetLiterals,
                                           const QString& criteria, std::vector<Value>& criteriaLiterals) {
    jet::lift(criteria, m_lifted);
    criteriaLiterals.swap(m_lifted.literals);
    auto& slot = dynaset.finds[m_lifted.shape];
    if (slot) return slot;
    const QString shape = m_lifted.shape;
    std::shared_ptr<Plan> plan;
    try {
        plan = std::make_shared<Plan>();
        plan->statement =
            m_translator->translateFind(*dynaset.statement, static_cast<int>(dynasetLiterals), criteria);
        if (m_engine->distant()) { // the row comes along
            auto whole = std::make_shared<jet::Statement>(*plan->statement);
            const jet::Dynaset& set = *dynaset.statement->dynaset;
            whole->sql.insert(QByteArray("SELECT ").size() + set.key.size(), ", " + set.columns);
            plan->statement = whole;
        }
    } catch (...) {
        dynaset.finds.remove(shape);
        throw;
    }
    if (dynaset.finds.size() > 100) dynaset.finds.clear();
    dynaset.finds.insert(shape, plan);
    return plan;
}

void Connection::bind(Prepared& prepared, const jet::Statement& statement,
                      const std::vector<Value>& literals) const {
    int number = 0;
    for (const jet::Parameter& parameter : statement.parameters) {
        if (parameter.encoding == jet::Encoding::Identity)
            prepared.bindInteger(++number, m_identity);
        else
            prepared.bind(++number, jet::encode(parameter, literals));
    }
}

Prepared& Connection::prepared(std::unique_ptr<Prepared>& slot, const QByteArray& sql) const {
    if (!m_engine) raise(3420);
    if (!slot) slot = m_engine->prepare(sql);
    return *slot;
}

void Connection::finish(Prepared& prepared) {
    Running running(prepared);
    while (running.step()) {
    }
}

qint64 Connection::execute(const QString& sql) {
    std::vector<Value> literals;
    std::shared_ptr<Plan> plan = this->plan(sql, literals);
    const jet::Kind kind = plan->statement->kind;
    if (kind == jet::Kind::Select) raise(3065);
    if (engine().readOnly()) raise(3027);
    if (kind == jet::Kind::SelectInto) {
        Transaction transaction(*this);
        runDdl(kind, *plan->statement->ddl);
        qint64 affected = 0;
        if (!plan->statement->sql.isEmpty()) {
            const auto insert = m_engine->prepare(plan->statement->sql);
            bind(*insert, *plan->statement, literals);
            finish(*insert);
            affected = m_engine->affected();
        }
        transaction.commit();
        return affected;
    }
    if (plan->statement->ddl) {
        runDdl(kind, *plan->statement->ddl);
        return 0;
    }
    // Looking for a foreign change of structure before each write would cost more than the write's own share;
    // the engine notices by itself. Where the old translation no longer fits, nothing was done yet.
    for (bool again = true;; again = false) {
        try {
            const bool numbers = kind == jet::Kind::Insert && table(plan->statement->target).autoNumber();
            Prepared& statement = prepared(
                plan->main, numbers ? plan->statement->sql + m_engine->returningKey() : plan->statement->sql);
            if (kind == jet::Kind::Delete) statement.allowRepeat(); // what is gone stays gone
            bind(statement, *plan->statement, literals);
            tableChanges(plan->statement->target);
            finishNoticing(statement);
            const qint64 affected = m_engine->affected();
            if (numbers && affected > 0) numberGiven(m_engine->lastKey());
            return affected;
        } catch (const RuntimeError& error) {
            if (!again || error.Number != 3000 || !refreshStructure()) throw;
            plan = this->plan(sql, literals);
        }
    }
}

void Connection::executeTogether(const QStringList& texts) {
    for (bool again = true;; again = false) {
        std::vector<std::shared_ptr<Plan>> plans;
        std::vector<std::unique_ptr<Prepared>> further; // of texts of one shape all but the first
        std::vector<Prepared*> statements;
        int before = 0, after = 0;
        for (const QString& text : texts) {
            std::vector<Value> literals;
            const auto& plan = plans.emplace_back(this->plan(text, literals));
            const jet::Kind kind = plan->statement->kind;
            if (kind == jet::Kind::Select) raise(3065);
            if (plan->statement->ddl) raise(3219);
            if (engine().readOnly()) raise(3027);
            Prepared* statement = &prepared(plan->main, plan->statement->sql);
            if (std::find(statements.begin(), statements.end(), statement) != statements.end())
                statement = further.emplace_back(m_engine->prepare(plan->statement->sql)).get();
            if (kind == jet::Kind::Delete) statement->allowRepeat();
            bind(*statement, *plan->statement, literals);
            tableChanges(plan->statement->target);
            before += statement->reprepared();
            statements.push_back(statement);
        }
        try {
            m_engine->runTogether(statements);
        } catch (const RuntimeError& error) {
            if (!again || error.Number != 3000 || !refreshStructure()) throw;
            continue;
        }
        for (const Prepared* statement : statements)
            after += statement->reprepared();
        if (after != before) refreshStructure();
        return noticeChange();
    }
}

void Connection::finishNoticing(Prepared& prepared) {
    const int before = prepared.reprepared();
    finish(prepared);
    if (prepared.reprepared() != before) refreshStructure();
    noticeChange();
}

void Connection::noticeChange() {
    if (m_engine->heardOfChange()) refreshStructure();
}

std::shared_ptr<qint64>& Connection::changesOf(const QString& table) {
    auto& count = m_changes[table.toCaseFolded()];
    if (!count) count = std::make_shared<qint64>(0);
    return count;
}

void Connection::everythingChanges() {
    for (const auto& count : std::as_const(m_changes))
        ++*count;
}

bool Connection::refreshStructure() {
    const qint64 version = m_engine->structureVersion();
    if (version == m_structureVersion) return false;
    m_catalogue.load(*m_engine);
    m_engine->structureKnown(m_catalogue.all());
    m_structureVersion = version;
    m_plans.clear();
    ++m_generation;
    return true;
}

void Connection::structureChanged() {
    everythingChanges();
    m_structureVersion = -1;
    refreshStructure();
}

std::vector<Value> Connection::pivotHeads(const jet::Statement& statement,
                                          const std::vector<Value>& literals) {
    const auto prepared = engine().prepare(statement.sql);
    bind(*prepared, statement, literals);
    const Type type = statement.columns.empty() ? Type::Null : statement.columns.front().type;
    std::vector<Value> heads;
    for (Running row(*prepared); row.step();)
        heads.push_back(row->value(0, type));
    return heads;
}

// An expression without a table is worked out where no network lies between.
Value Connection::worked(const QString& expression) {
    if (m_engine->distant()) {
        if (!m_scratch) {
            auto embedded = openEngine(u":memory:"_s, Access::Shared);
            embedded->furnish();
            m_scratch = std::make_unique<Connection>(std::move(embedded));
        }
        return m_scratch->worked(expression);
    }
    std::vector<Value> literals;
    const auto plan = this->plan(u"SELECT "_s + expression, literals);
    Prepared& select = prepared(plan->main, plan->statement->sql);
    bind(select, *plan->statement, literals);
    Running row(select);
    return row.step() ? row->value(0, plan->statement->columns.at(0).type) : Value();
}

Plan::Default Connection::defaultOf(const jet::Column& column) {
    const QString& expression = column.defaultText;
    if (column.autoNumber || expression.isEmpty())
        return {column.type == Type::Boolean ? Value(false) : Value(), false, true};
    Value value;
    try {
        const QString text = expression.trimmed();
        value = worked(text.startsWith(u'=') ? text.mid(1) : text);
    } catch (const RuntimeError&) {
        if (column.type != Type::Text && column.type != Type::Memo) throw;
        value = expression; // a bare word is the text itself
    }
    return {valueForColumn(value, column), true, !expression.contains(u'(')};
}

void Connection::beginTrans() {
    if (engine().inTransaction()) raise(3219);
    m_engine->begin();
}

void Connection::commitTrans() {
    if (!engine().inTransaction()) raise(3219);
    m_engine->commit();
}

void Connection::rollbackTrans() {
    if (!engine().inTransaction()) raise(3219);
    m_engine->rollback();
    try {
        structureChanged();
    } catch (const RuntimeError&) { // taken back all the same; the next statement looks again, and tells
        m_plans.clear();
    }
}

Transaction::Transaction(Connection& connection)
    : m_connection(connection)
    , m_outer(!connection.engine().inTransaction()) {
    if (m_outer)
        m_connection.engine().begin();
    else
        m_connection.engine().run("SAVEPOINT part");
}

Transaction::~Transaction() {
    if (!m_open || !m_connection.m_engine) return;
    try {
        if (m_outer)
            m_connection.m_engine->rollback();
        else
            m_connection.m_engine->run("ROLLBACK TO part; RELEASE part");
        m_connection.structureChanged();
    } catch (const RuntimeError&) {
        // The connection is beyond help; its next statement says so.
    }
}

void Transaction::commit() {
    if (m_outer)
        m_connection.engine().commit();
    else
        m_connection.engine().run("RELEASE part");
    m_open = false;
}

} // namespace store
