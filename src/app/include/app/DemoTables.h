#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// The data of the demo shop: tab-separated text in assets/demo that is carried inside the program.
namespace demo {

/// One table as text. Cells are German: "1,99", "31.12.2029 23:59:59", "ja" and "nein".
struct Table {
    QString name;
    QStringList columns;
    QList<QStringList> rows;
};

/// The tables that the demo fills, in the order in which they are loaded.
[[nodiscard]] QStringList tableNames();
/// Reads UTF-8 text: a line of column names, then one line a row, cells parted by tabs. Raises 5 and tells
/// the line when a row has more or fewer cells than there are columns, or a column comes twice.
[[nodiscard]] Table parseTable(const QString& name, const QByteArray& text);
/// A table as it was built into the program; raises 53 for a name that is none of tableNames().
[[nodiscard]] Table readTable(const QString& name);
/// A file of the demo shop, by its path below assets/demo; raises 53 when there is none.
[[nodiscard]] QByteArray readFile(const QString& path);
/// Names of the drawings below "bilder/", one for each article picture.
[[nodiscard]] QStringList drawings();
/// Names of the closing texts for invoices.
[[nodiscard]] QStringList closingTexts();

} // namespace demo
