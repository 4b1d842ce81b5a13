#include "Letters.h"

QString inCase(QStringView text, Case wanted) {
    QString result = text.toString();
    if (wanted == Case::Kept) return result;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar c = std::as_const(result)[i];
        result[i] = wanted == Case::Upper ? c.toUpper() : c.toLower();
    }
    return result;
}
