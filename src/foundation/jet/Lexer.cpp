#include "Lexer.h"

#include <text/RuntimeError.h>

#include <charconv>
#include <cmath>

using namespace Qt::StringLiterals;

namespace jet {

namespace {

struct Entry {
    const char16_t* text = nullptr;
    int length = 0;
    Word word = Word::None;
};

constexpr Entry entry(const char16_t* text, Word word) {
    int n = 0;
    while (text[n])
        ++n;
    return {text, n, word};
}

constexpr Entry wordList[] = {
    entry(u"add", Word::Add),
    entry(u"alike", Word::Alike),
    entry(u"all", Word::All),
    entry(u"alter", Word::Alter),
    entry(u"and", Word::And),
    entry(u"any", Word::Any),
    entry(u"as", Word::As),
    entry(u"asc", Word::Asc),
    entry(u"between", Word::Between),
    entry(u"by", Word::By),
    entry(u"column", Word::Column),
    entry(u"constraint", Word::Constraint),
    entry(u"create", Word::Create),
    entry(u"cross", Word::Cross),
    entry(u"default", Word::Default),
    entry(u"delete", Word::Delete),
    entry(u"desc", Word::Desc),
    entry(u"distinct", Word::Distinct),
    entry(u"distinctrow", Word::DistinctRow),
    entry(u"drop", Word::Drop),
    entry(u"eqv", Word::Eqv),
    entry(u"exists", Word::Exists),
    entry(u"false", Word::False),
    entry(u"foreign", Word::Foreign),
    entry(u"from", Word::From),
    entry(u"full", Word::Full),
    entry(u"group", Word::Group),
    entry(u"having", Word::Having),
    entry(u"if", Word::If),
    entry(u"imp", Word::Imp),
    entry(u"in", Word::In),
    entry(u"index", Word::Index),
    entry(u"inner", Word::Inner),
    entry(u"insert", Word::Insert),
    entry(u"into", Word::Into),
    entry(u"is", Word::Is),
    entry(u"join", Word::Join),
    entry(u"key", Word::Key),
    entry(u"left", Word::Left),
    entry(u"like", Word::Like),
    entry(u"mod", Word::Mod),
    entry(u"no", Word::No),
    entry(u"not", Word::Not),
    entry(u"null", Word::Null),
    entry(u"off", Word::Off),
    entry(u"on", Word::On),
    entry(u"option", Word::Option),
    entry(u"or", Word::Or),
    entry(u"order", Word::Order),
    entry(u"outer", Word::Outer),
    entry(u"percent", Word::Percent),
    entry(u"pivot", Word::Pivot),
    entry(u"primary", Word::Primary),
    entry(u"references", Word::References),
    entry(u"right", Word::Right),
    entry(u"select", Word::Select),
    entry(u"set", Word::Set),
    entry(u"some", Word::Some),
    entry(u"table", Word::Table),
    entry(u"top", Word::Top),
    entry(u"transform", Word::Transform),
    entry(u"true", Word::True),
    entry(u"union", Word::Union),
    entry(u"unique", Word::Unique),
    entry(u"update", Word::Update),
    entry(u"values", Word::Values),
    entry(u"view", Word::View),
    entry(u"where", Word::Where),
    entry(u"with", Word::With),
    entry(u"xor", Word::Xor),
    entry(u"yes", Word::Yes),
};
constexpr std::size_t longestWord = 11, tableSize = 512;

constexpr std::uint32_t step(std::uint32_t hash, char16_t c) { return hash * 33 + (c | 0x20u); }

constexpr auto makeWordTable() {
    std::array<Entry, tableSize> table{};
    for (const Entry& e : wordList) {
        std::uint32_t hash = 0;
        for (int i = 0; i < e.length; ++i)
            hash = step(hash, e.text[i]);
        std::size_t at = hash % tableSize;
        while (table[at].text)
            at = (at + 1) % tableSize;
        table[at] = e;
    }
    return table;
}
constexpr auto wordTable = makeWordTable();

Word wordOf(QStringView text, std::uint32_t hash) {
    if (text.size() > qsizetype(longestWord)) return Word::None;
    for (std::size_t at = hash % tableSize; wordTable[at].text; at = (at + 1) % tableSize) {
        const Entry& e = wordTable[at];
        if (e.length != text.size()) continue;
        int i = 0;
        while (i < e.length && (text[i].unicode() | 0x20u) == e.text[i] && text[i].unicode() < 128)
            ++i;
        if (i == e.length) return e.word;
    }
    return Word::None;
}

enum : std::uint8_t { NameStart = 1, NamePart = 2, Digit = 4, Blank = 8 };

constexpr auto makeKinds() {
    std::array<std::uint8_t, 128> kinds{};
    for (std::size_t c = 0; c < 128; ++c) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
        const bool digit = c >= '0' && c <= '9';
        kinds[c] = std::uint8_t((letter ? NameStart : 0) | (letter || digit || c == '$' ? NamePart : 0) |
                                (digit ? Digit : 0) | (c == ' ' || (c >= 9 && c <= 13) ? Blank : 0));
    }
    return kinds;
}
constexpr auto kinds = makeKinds();

bool isDigit(char16_t c) { return c < 128 && (kinds[c] & Digit); }

bool isBlank(char16_t c) { return c < 128 ? kinds[c] & Blank : QChar(c).isSpace(); }

bool isNameStart(char16_t c) {
    if (c < 128) return kinds[c] & NameStart;
    return QChar(c).isLetter() || QChar::isSurrogate(c);
}

bool isNamePart(char16_t c) {
    if (c < 128) return kinds[c] & NamePart;
    return QChar(c).isLetterOrNumber() || QChar(c).isMark() || QChar::isSurrogate(c) || c == u'°';
}

// The arguments of these functions are read as expressions, so that they belong to the shape.
bool readsTexts(QStringView name) {
    if (name.size() < 4 || name.size() > 7) return false;
    const char16_t first = name.front().unicode() | 0x20;
    if (first != u'd' && first != u'e') return false;
    for (const QStringView one : {u"DLookup", u"DSum", u"DCount", u"DMin", u"DMax", u"DAvg", u"Eval"})
        if (name.compare(one, Qt::CaseInsensitive) == 0) return true;
    return false;
}

} // namespace

void raiseSyntax(const QString& what, QStringView text, qsizetype place) {
    place = std::clamp<qsizetype>(place, 0, text.size());
    const QString spot = text.mid(place, 25).trimmed().toString();
    const QString where = spot.isEmpty() ? u"am Ende des Textes"_s : u"bei '"_s + spot + u"'"_s;
    throw RuntimeError(
        3075, u"Syntaxfehler "_s + where + u" (Stelle "_s + QString::number(place + 1) + u"): "_s + what, {},
        place);
}

void Lexer::fail(const QString& what, qsizetype pos) const { raiseSyntax(what, m_text, pos); }

QStringView Lexer::nameOf(const Token& token) const {
    if (token.kind == Tok::Quoted) return m_text.mid(token.pos + 1, token.end - token.pos - 2);
    return m_text.mid(token.pos, token.end - token.pos);
}

Token Lexer::next() {
    const qsizetype size = m_text.size();
    while (m_pos < size && isBlank(m_text[m_pos].unicode()))
        ++m_pos;
    Token token;
    token.pos = token.end = m_pos;
    if (m_pos >= size) return token;
    const char16_t c = m_text[m_pos].unicode();
    const char16_t ahead = m_pos + 1 < size ? m_text[m_pos + 1].unicode() : u'\0';
    if (isNameStart(c) || (c == u'@' && ahead == u'@'))
        name(token);
    else if (isDigit(c) || (c == u'.' && isDigit(ahead) && !m_operand))
        number(token);
    else if (c == u'&' && !m_operand && (ahead == u'H' || ahead == u'h' || ahead == u'O' || ahead == u'o'))
        basedNumber(token);
    else if (c == u'\'' || c == u'"')
        quoted(token, c);
    else if (c == u'#')
        date(token);
    else
        symbol(token);
    token.end = m_pos;
    follow(token);
    return token;
}

// Keeps just enough of what came before to tell which literals stay in the shape.
void Lexer::follow(const Token& token) {
    if (m_first) {
        m_first = false;
        if (token.word == Word::Create || token.word == Word::Alter || token.word == Word::Drop)
            m_lifting = false;
    }
    if (token.kind == Tok::Open) {
        ++m_depth;
        if (m_textCall && m_textDepth < 0) m_textDepth = m_depth;
    }
    if (token.kind == Tok::Close && --m_depth < m_orderDepth) m_orderDepth = -1;
    if (m_depth < m_textDepth) m_textDepth = -1;
    m_textCall = (token.kind == Tok::Name || token.kind == Tok::Quoted) && readsTexts(nameOf(token));
    if (token.word == Word::By && m_lastWord == Word::Order) m_orderDepth = m_depth;
    if (token.word == Word::Pivot) m_lifting = false;
    m_operand = token.kind == Tok::Close || token.kind == Tok::Quoted || token.kind == Tok::Number ||
                token.kind == Tok::Text || token.kind == Tok::Date ||
                (token.kind == Tok::Name && (token.word == Word::None || m_last == Tok::Dot));
    m_last = token.kind;
    m_lastWord = token.word;
}

void Lexer::literal(Token& token, Value&& value, LiteralClass kind) {
    token.value = int(values.size());
    values.push_back(std::move(value));
    m_classes.push_back(kind);
    const bool decides = token.kind == Tok::Number &&
                         (m_lastWord == Word::Top || (m_orderDepth == m_depth && m_depth >= 0 &&
                                                      (m_lastWord == Word::By || m_last == Tok::Comma)));
    if (m_lifting && !decides && m_textDepth < 0) token.literal = m_literals++;
}

void Lexer::name(Token& token) {
    token.kind = Tok::Name;
    const qsizetype size = m_text.size();
    std::uint32_t hash = 0;
    if (m_text[m_pos] == u'@') m_pos += 2; // "@@IDENTITY"
    for (; m_pos < size && isNamePart(m_text[m_pos].unicode()); ++m_pos)
        hash = step(hash, m_text[m_pos].unicode());
    token.word = wordOf(m_text.mid(token.pos, m_pos - token.pos), hash);
}

void Lexer::number(Token& token) {
    token.kind = Tok::Number;
    const qsizetype size = m_text.size();
    qint64 mantissa = 0;
    int digits = 0, decimals = 0;
    bool point = false;
    for (; m_pos < size; ++m_pos) {
        const char16_t c = m_text[m_pos].unicode();
        if (isDigit(c)) {
            if (digits < 18) mantissa = mantissa * 10 + (c - u'0');
            if (mantissa) ++digits;
            if (point) ++decimals;
        } else if (c == u'.' && !point)
            point = true;
        else
            break;
    }
    bool exponent = false;
    if (m_pos < size && (m_text[m_pos] == u'e' || m_text[m_pos] == u'E')) {
        qsizetype at = m_pos + 1;
        if (at < size && (m_text[at] == u'+' || m_text[at] == u'-')) ++at;
        if (at < size && isDigit(m_text[at].unicode())) {
            exponent = true;
            while (at < size && isDigit(m_text[at].unicode()))
                ++at;
            m_pos = at;
        }
    }
    if (m_pos < size && isNameStart(m_text[m_pos].unicode()))
        fail(u"Nach einer Zahl fehlt ein Operator oder Zwischenraum."_s, token.pos);
    if (!point && !exponent && digits <= 18) {
        const bool small = mantissa <= std::numeric_limits<qint32>::max();
        literal(token, Value(mantissa), small ? LiteralClass::Integer : LiteralClass::BigInteger);
        return;
    }
    static constexpr double powers[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    double value = 0;
    if (!exponent && digits <= 15 && decimals <= 22) {
        value = double(mantissa) / powers[decimals];
    } else {
        const QByteArray bytes = m_text.mid(token.pos, m_pos - token.pos).toLatin1();
        const auto result = std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), value);
        if (result.ec != std::errc()) fail(u"Die Zahl ist zu groß oder zu klein."_s, token.pos);
    }
    // By the value, not by its spelling: 1.5000 and 15e-1 are money as 1.5 is.
    const bool money = value < 9e11 && std::nearbyint(value * 1e4) / 1e4 == value;
    literal(token, Value(value), money ? LiteralClass::Money : LiteralClass::Double);
}

void Lexer::basedNumber(Token& token) {
    token.kind = Tok::Number;
    const bool hex = m_text[m_pos + 1] == u'H' || m_text[m_pos + 1] == u'h';
    m_pos += 2;
    const qsizetype start = m_pos;
    while (m_pos < m_text.size() && isNamePart(m_text[m_pos].unicode()))
        ++m_pos;
    bool ok = false;
    const quint32 bits = m_text.mid(start, m_pos - start).toString().toUInt(&ok, hex ? 16 : 8);
    if (!ok) fail(u"Das ist keine Zahl."_s, token.pos);
    // Up to four hexadecimal digits are a 16-bit number with its sign.
    const qint64 value = m_pos - start <= 4 && hex ? qint64(qint16(bits)) : qint64(qint32(bits));
    literal(token, Value(value), LiteralClass::Integer);
}

void Lexer::quoted(Token& token, char16_t quote) {
    token.kind = Tok::Text;
    const qsizetype size = m_text.size();
    qsizetype at = m_pos + 1;
    bool doubled = false;
    for (;; ++at) {
        if (at >= size) fail(u"Das abschließende Anführungszeichen fehlt."_s, token.pos);
        if (m_text[at] != quote) continue;
        if (at + 1 < size && m_text[at + 1] == quote) {
            doubled = true;
            ++at;
        } else
            break;
    }
    QString value = m_text.mid(m_pos + 1, at - m_pos - 1).toString();
    if (doubled) value.replace(QString(2, QChar(quote)), QString(1, QChar(quote)));
    m_pos = at + 1;
    LiteralClass kind = LiteralClass::Text;
    if ((m_lastWord == Word::Like || m_lastWord == Word::Alike) && !value.isEmpty() &&
        !u"*?#[%_"_s.contains(value.front()))
        kind = LiteralClass::PrefixedPattern;
    literal(token, Value(std::move(value)), kind);
}

void Lexer::date(Token& token) {
    token.kind = Tok::Date;
    const qsizetype end = m_text.mid(m_pos + 1, 60).indexOf(u'#');
    if (end < 0) fail(u"Das abschließende # des Datums fehlt."_s, token.pos);
    const auto value = parseDateLiteral(m_text.mid(m_pos + 1, end));
    if (!value) fail(u"Das ist kein Datum (Monat/Tag/Jahr)."_s, token.pos);
    m_pos += end + 2;
    literal(token, Value(*value), LiteralClass::Date);
}

void Lexer::symbol(Token& token) {
    const char16_t c = m_text[m_pos].unicode();
    const char16_t ahead = m_pos + 1 < m_text.size() ? m_text[m_pos + 1].unicode() : u'\0';
    auto two = [&](char16_t second, Tok kind) {
        if (ahead != second) return false;
        token.kind = kind;
        m_pos += 2;
        return true;
    };
    auto one = [&](Tok kind) {
        token.kind = kind;
        ++m_pos;
    };
    switch (c) {
    case u'[':
    case u'`': {
        const qsizetype end = m_text.indexOf(c == u'[' ? u']' : u'`', m_pos + 1);
        if (end < 0)
            fail(c == u'[' ? u"Die schließende Klammer ] fehlt."_s : u"Das schließende ` fehlt."_s, m_pos);
        if (end == m_pos + 1) fail(u"Der Name ist leer."_s, m_pos);
        token.kind = Tok::Quoted;
        m_pos = end + 1;
        return;
    }
    case u'=':
        if (two(u'<', Tok::LessEqual) || two(u'>', Tok::GreaterEqual)) return;
        return one(Tok::Equal);
    case u'<':
        if (two(u'>', Tok::NotEqual) || two(u'=', Tok::LessEqual)) return;
        return one(Tok::Less);
    case u'>':
        if (two(u'<', Tok::NotEqual) || two(u'=', Tok::GreaterEqual)) return;
        return one(Tok::Greater);
    case u'!':
        if (two(u'=', Tok::NotEqual)) return;
        return one(Tok::Bang);
    case u'+':
        return one(Tok::Plus);
    case u'-':
        return one(Tok::Minus);
    case u'*':
        return one(Tok::Star);
    case u'/':
        return one(Tok::Slash);
    case u'\\':
        return one(Tok::Backslash);
    case u'^':
        return one(Tok::Caret);
    case u'&':
        return one(Tok::Ampersand);
    case u'(':
        return one(Tok::Open);
    case u')':
        return one(Tok::Close);
    case u',':
        return one(Tok::Comma);
    case u'.':
        return one(Tok::Dot);
    case u';':
        return one(Tok::Semicolon);
    case u'?':
        return one(Tok::Question);
    default:
        fail(u"Dieses Zeichen hat hier keinen Sinn."_s, m_pos);
    }
}

void lift(QStringView text, Lifted& result) {
    // A private character outside of quotes is no token, so these stand for nothing else.
    static constexpr char16_t placeholders[] = {u'\uE000', u'\uE001', u'\uE002', u'\uE003',
                                                u'\uE004', u'\uE005', u'\uE006'};
    Lexer lexer(text);
    lexer.values = std::move(result.literals);
    lexer.values.clear();
    result.shape.resize(0);
    result.shape.reserve(text.size());
    std::size_t kept = 0;
    qsizetype copied = 0;
    for (Token token = lexer.next(); token.kind != Tok::End; token = lexer.next()) {
        if (token.literal < 0) continue;
        result.shape.append(text.mid(copied, token.pos - copied));
        result.shape.append(QChar(placeholders[std::size_t(lexer.classOf(token))]));
        copied = token.end;
        if (std::size_t(token.value) != kept)
            std::swap(lexer.values[kept], lexer.values[std::size_t(token.value)]);
        ++kept;
    }
    result.shape.append(text.mid(copied));
    lexer.values.resize(kept);
    result.literals = std::move(lexer.values);
}

} // namespace jet
