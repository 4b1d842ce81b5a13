#pragma once

#include "Lexer.h"

#include <deque>
#include <span>

/// The tree of a statement. The parser builds it, the binder resolves its names, types its expressions and
/// puts conversions in, the emitter and the printer only read it. All nodes live in the tree's arena and go
/// with it.
namespace jet {

/// Memory for nodes: handed out in order, given back all at once, no destructors.
class Arena {
  public:
    template <class T, class... A>
    T* make(A&&... arguments) {
        static_assert(std::is_trivially_destructible_v<T>);
        return new (take(sizeof(T), alignof(T))) T{std::forward<A>(arguments)...};
    }
    template <class T>
    std::span<T> copy(const std::vector<T>& items) {
        static_assert(std::is_trivially_destructible_v<T>);
        if (items.empty()) return {};
        T* to = static_cast<T*>(take(sizeof(T) * items.size(), alignof(T)));
        std::uninitialized_copy(items.begin(), items.end(), to);
        return {to, items.size()};
    }

  private:
    void* take(std::size_t size, std::size_t align) {
        std::size_t at = (m_used + align - 1) & ~(align - 1);
        if (m_blocks.empty() || at + size > m_size) {
            m_size = std::max<std::size_t>(16384, size);
            m_blocks.push_back(std::make_unique<std::byte[]>(m_size));
            at = 0;
        }
        m_used = at + size;
        return m_blocks.back().get() + at;
    }
    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    std::size_t m_used = 0, m_size = 0;
};

struct Query;
struct Source;
struct FunctionInfo;
struct Output;

enum class ExprKind : std::uint8_t {
    Literal, ///< value, literal
    True,
    False,
    Null,
    Name, ///< [qualifier.]name
    Negate,
    Plus,
    Not,
    Binary,  ///< op, two operands
    All,     ///< operands joined by AND
    Any,     ///< operands joined by OR
    Between, ///< three operands, negated
    In,      ///< operand and the list, or operand and `query`; negated
    Like,    ///< two operands, negated
    IsNull,  ///< one operand, negated
    Call,    ///< name, operands
    Scalar,  ///< query in parentheses
    Exists,  ///< query, negated
    Compare, ///< op, one operand, ANY or ALL (`negated` is ALL) of `query`
    Convert  ///< put in by the binder: one operand brought to `type`
};

enum class Op : std::uint8_t {
    None,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntDivide,
    Mod,
    Power,
    Concat,
    Xor,
    Eqv,
    Imp
};

/// Marks of a call's argument list.
enum class CallForm : std::uint8_t { Plain, Star, Distinct };

struct Expr {
    ExprKind kind = ExprKind::Null;
    Op op = Op::None;
    bool negated = false;
    CallForm form = CallForm::Plain;
    bool ansi = false; ///< ALIKE instead of LIKE: the wildcards are % and _
    qsizetype pos = 0, end = 0;
    QStringView qualifier{}, name{};
    bool spacedName = false;      ///< the name stood in brackets: never a keyword or function
    const Value* value = nullptr; ///< of a literal
    int literal = -1;             ///< its running number, -1 when it stays in the text
    LiteralClass literalClass = LiteralClass::Integer;
    std::span<Expr*> operands{};
    Query* query = nullptr;
    int height = 1; ///< nodes above each other, itself included

    // What the binder adds.
    Type type = Type::Null;
    Encoding encoding = Encoding::AsIs; ///< of a literal
    bool bound = false;
    bool condition = false;         ///< the engine yields 0 and 1 for it, not 0 and -1
    bool collated = false;          ///< the engine knows the text collation of it by itself
    bool aggregate = false;         ///< an aggregate stands in it
    const Source* source = nullptr; ///< of a column
    int column = -1;                ///< in the source
    Expr* target = nullptr;         ///< of a name that stands for another expression of the select list
    const FunctionInfo* function = nullptr;
};

enum class JoinKind : std::uint8_t { Inner, Left, Right, Cross };

/// A table, a derived table or a join of two sources.
struct Source {
    enum class Form : std::uint8_t { Table, Derived, Join };
    Form form = Form::Table;
    JoinKind join = JoinKind::Inner;
    qsizetype pos = 0;
    QStringView name{}, alias{};
    Query* query = nullptr;
    Source *left = nullptr, *right = nullptr;
    Expr* on = nullptr;
    // What the binder adds.
    const Table* table = nullptr;
    bool emitAlias = false;
};

struct SelectItem {
    Expr* expr = nullptr; ///< nullptr for a star
    QStringView alias{};
    QStringView qualifier{}; ///< of a star
    qsizetype pos = 0;
};

struct OrderItem {
    Expr* expr = nullptr;
    bool descending = false;
    int position = 0; ///< 1 up when it stands for a column of the select list, else 0
};

/// Column of a bound query.
struct Output {
    Expr* expr = nullptr; ///< nullptr for a column of a UNION
    QStringView name{};
    Type type = Type::Null;
    bool collated = false;
    const Source* source = nullptr; ///< where it comes from unchanged
    int column = -1;
};

enum class Quantifier : std::uint8_t { All, Distinct, DistinctRow };

/// One SELECT between UNIONs.
struct Select {
    Quantifier quantifier = Quantifier::All;
    int top = -1;
    bool percent = false;
    qsizetype pos = 0;
    std::span<SelectItem> items{};
    std::span<Source*> from{};
    Expr *where = nullptr, *having = nullptr;
    std::span<Expr*> groupBy{};
    // What the binder adds.
    bool grouped = false;
    std::span<Output> outputs{};
    std::span<Expr*> hidden{}; ///< row keys that DISTINCTROW compares beside the select list
};

struct Leg {
    Select* select = nullptr;
    Query* nested = nullptr; ///< a leg in parentheses
    bool all = false;        ///< UNION ALL stood before it
};

struct Query {
    std::span<Leg> legs{};
    std::span<OrderItem> orderBy{};
    qsizetype pos = 0;
    int height = 1;
    // What the binder adds.
    std::span<Output> outputs{};
    bool named = false; ///< seen from outside: its columns need their names and collation
};

struct Assignment {
    QStringView qualifier{}, name{};
    Expr* value = nullptr;
    qsizetype pos = 0;
    int column = -1;
};

struct NameAt {
    QStringView name{};
    qsizetype pos = 0;
};

/// A parsed statement with all that its nodes point to.
struct Tree {
    Tree() = default;
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    Arena arena;
    std::deque<Value> values;  ///< of the literals
    std::deque<QString> names; ///< made up by the binder
    QString text;

    Kind kind = Kind::Select;
    Query* query = nullptr; ///< Select, SelectInto, INSERT .. SELECT
    QStringView into{};     ///< SelectInto, Insert: the table
    qsizetype intoPos = 0;
    bool emptyTable = false;            ///< SelectInto without the rows
    std::vector<NameAt> columns;        ///< Insert
    std::vector<std::span<Expr*>> rows; ///< Insert .. VALUES
    std::span<Source*> from;            ///< Update, Delete
    std::vector<Assignment> assignments;
    Expr* where = nullptr;
    QStringView deleteFrom{};       ///< "a" of DELETE a.* FROM ..
    Ddl ddl;                        ///< changes of structure
    const Table* table = nullptr;   ///< bound: changed by Insert, Update, Delete
    Source* target = nullptr;       ///< bound: its place among `from`
    std::vector<int> columnIndexes; ///< bound: the columns an Insert fills, in order of its values
    std::vector<std::pair<int, Expr*>> defaults; ///< bound: columns an Insert leaves to their defaults
    // TRANSFORM
    Expr* transform = nullptr;
    Expr* pivot = nullptr;
    std::vector<Expr*> pivotHeads;
};

} // namespace jet
