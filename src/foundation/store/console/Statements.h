#pragma once

#include <QStringList>

#include <optional>

namespace console {

/// Cuts a stream of lines into statements: one ends at a semicolon outside quotes, brackets and dates, at an
/// empty line, or with the input.
class Splitter {
  public:
    /// Takes one line without its line end; what it completes can then be fetched with `next`.
    void feed(const QString& line);
    void finish(); ///< no more lines follow
    /// The next whole statement, without its semicolon; std::nullopt when there is none yet.
    [[nodiscard]] std::optional<QString> next();

  private:
    void take();
    QString m_pending;
    QChar m_quote; ///< the character that ends the quotation we stand in
    QStringList m_ready;
};

} // namespace console
