#include "TextStock.h"

#include <text/Sort.h>

#include <algorithm>
#include <cstring>

namespace {
constexpr char separator = '\0'; ///< between cells; no part of a pattern reaches over it
}

TextQuestion::TextQuestion(std::vector<TextCondition> conditions)
    : m_conditions(std::move(conditions)) {
    for (const TextCondition& condition : m_conditions)
        static_cast<void>(LikeText({}, condition.pattern)); // raises what is wrong with it
    if (m_conditions.empty()) return;
    const QString part = FoldedPart(m_conditions.front().pattern);
    const bool same = std::all_of(m_conditions.begin(), m_conditions.end(), [&](const auto& condition) {
        return FoldedPart(condition.pattern) == part;
    });
    if (same) m_part = part.toUtf8();
}

void TextStock::add(std::span<const Value> row) {
    m_keys.append(row[0].toText());
    m_foldedStarts.push_back(m_folded.size());
    for (const Value& cell : row.subspan(1)) {
        m_starts.push_back(m_texts.size());
        m_nulls.push_back(cell.isNull());
        const QString text = cell.isNull() ? QString() : cell.toText();
        m_texts += text;
        const qsizetype before = m_folded.size();
        m_folded += FoldedText(text).toUtf8();
        m_folded += separator;
        for (qsizetype i = before; i < m_folded.size(); ++i)
            ++m_counts[static_cast<unsigned char>(m_folded[i])];
    }
}

void TextStock::dropLast() {
    const auto cells = static_cast<std::size_t>(m_columns);
    m_keys.removeLast();
    m_texts.truncate(m_starts[m_starts.size() - cells]);
    m_folded.truncate(m_foldedStarts.back());
    m_starts.resize(m_starts.size() - cells);
    m_nulls.resize(m_nulls.size() - cells);
    m_foldedStarts.pop_back();
}

void TextStock::clear() { *this = TextStock(m_columns); }

// The engine of the library leaps to the byte that is rarest in all texts, much faster than one could
// compare.
qsizetype TextStock::find(const QByteArray& part, qsizetype from) const {
    const auto count = [this](char c) { return m_counts[static_cast<unsigned char>(c)]; };
    const auto rarest =
        std::min_element(part.begin(), part.end(), [&](char a, char b) { return count(a) < count(b); }) -
        part.begin();
    const char* const begin = m_folded.constData();
    const qsizetype last = m_folded.size() - part.size();
    for (qsizetype at = from; at <= last; ++at) {
        const void* const found =
            std::memchr(begin + at + rarest, part.at(rarest), static_cast<std::size_t>(last - at + 1));
        if (found == nullptr) return -1;
        at = static_cast<const char*>(found) - begin - rarest;
        if (std::memcmp(begin + at, part.constData(), static_cast<std::size_t>(part.size())) == 0) return at;
    }
    return -1;
}

int TextStock::next(int row, const TextQuestion& question) const {
    if (question.m_part.isEmpty()) {
        while (row < rows() && !answers(row, question))
            ++row;
        return row;
    }
    while (row < rows()) {
        const qsizetype at = find(question.m_part, m_foldedStarts[static_cast<std::size_t>(row)]);
        if (at < 0) return rows();
        const auto behind = std::upper_bound(m_foldedStarts.begin() + row, m_foldedStarts.end(), at);
        row = static_cast<int>(behind - m_foldedStarts.begin()) - 1;
        if (answers(row, question)) return row;
        ++row;
    }
    return rows();
}

bool TextStock::answers(int row, const TextQuestion& question) const {
    return std::any_of(
        question.m_conditions.begin(), question.m_conditions.end(), [&](const TextCondition& condition) {
            const auto cell = static_cast<std::size_t>(row * m_columns + condition.column);
            if (m_nulls[cell]) return false;
            const qsizetype end = cell + 1 < m_starts.size() ? m_starts[cell + 1] : m_texts.size();
            return LikeText(QStringView(m_texts).sliced(m_starts[cell], end - m_starts[cell]),
                            condition.pattern);
        });
}
