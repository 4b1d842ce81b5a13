#pragma once

#include <jet/Translator.h>

#include <QStringView>

#include <array>

namespace jet {

/// Words with a meaning in the dialect. They are told apart from names only where the grammar asks for them,
/// so most of them may still name a column.
enum class Word : std::uint8_t {
    None,
    Add,
    Alike,
    All,
    Alter,
    And,
    Any,
    As,
    Asc,
    Between,
    By,
    Column,
    Constraint,
    Create,
    Cross,
    Default,
    Delete,
    Desc,
    Distinct,
    DistinctRow,
    Drop,
    Eqv,
    Exists,
    False,
    Foreign,
    From,
    Full,
    Group,
    Having,
    If,
    Imp,
    In,
    Index,
    Inner,
    Insert,
    Into,
    Is,
    Join,
    Key,
    Left,
    Like,
    Mod,
    No,
    Not,
    Null,
    Off,
    On,
    Option,
    Or,
    Order,
    Outer,
    Percent,
    Pivot,
    Primary,
    References,
    Right,
    Select,
    Set,
    Some,
    Table,
    Top,
    Transform,
    True,
    Union,
    Unique,
    Update,
    Values,
    View,
    Where,
    With,
    Xor,
    Yes
};

enum class Tok : std::uint8_t {
    End,
    Name,
    Quoted,
    Number,
    Text,
    Date,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    Ampersand,
    Open,
    Close,
    Comma,
    Dot,
    Bang,
    Semicolon,
    Question
};

struct Token {
    Tok kind = Tok::End;
    Word word = Word::None; ///< of a bare name
    int value = -1;         ///< index into Lexer::values, of a literal
    int literal = -1;       ///< running number of a literal that is lifted out
    qsizetype pos = 0, end = 0;
};

/// What the translation may know of a literal that was lifted; everything else comes with the parameter.
enum class LiteralClass : std::uint8_t { Integer, BigInteger, Money, Double, Text, PrefixedPattern, Date };

/// Cuts a text into tokens, one at a time. Literals are numbered in the order in which they stand; those on
/// which the translation itself hangs (behind TOP, positions in ORDER BY, everything behind PIVOT and in
/// changes of structure) get no number.
class Lexer {
  public:
    explicit Lexer(QStringView text, bool lifting = true)
        : m_text(text)
        , m_lifting(lifting) {}

    /// The next token, Tok::End from the end on. Raises 3075 for what is no token.
    Token next();
    /// The values of all literals seen so far.
    std::vector<Value> values;
    [[nodiscard]] LiteralClass classOf(const Token& token) const {
        return m_classes[std::size_t(token.value)];
    }
    /// The name without its brackets or back-quotes.
    [[nodiscard]] QStringView nameOf(const Token& token) const;

  private:
    void number(Token& token);
    void basedNumber(Token& token);
    void quoted(Token& token, char16_t quote);
    void date(Token& token);
    void name(Token& token);
    void symbol(Token& token);
    void literal(Token& token, Value&& value, LiteralClass kind);
    void follow(const Token& token);
    [[noreturn]] void fail(const QString& what, qsizetype pos) const;

    QStringView m_text;
    qsizetype m_pos = 0;
    bool m_lifting;
    int m_literals = 0;
    std::vector<LiteralClass> m_classes;
    Tok m_last = Tok::End;
    Word m_lastWord = Word::None;
    bool m_first = true, m_operand = false;
    int m_depth = 0, m_orderDepth = -1;
    int m_textDepth = -1; ///< inside the arguments of a function that reads texts as expressions
    bool m_textCall = false;
};

/// The date between number signs, month first: "11/22/2026", "11.22.2026", "2026-11-22", "22 Nov 2026", each
/// with an optional time "14:30[:15]" or "2:30 PM", or a time alone. std::nullopt for anything else.
[[nodiscard]] std::optional<DateTime> parseDateLiteral(QStringView text);

/// Raises error 3075 at `place`.
[[noreturn]] void raiseSyntax(const QString& what, QStringView text, qsizetype place);

} // namespace jet
