#pragma once

#include <QByteArray>
#include <QSizeF>
#include <QStringList>

namespace devices {

struct PrintQueues {
    QStringList names;
    QString defaultName; ///< "" when the system has none
};
/// What the print system of the platform knows.
[[nodiscard]] PrintQueues printQueues();
/// The paper of a queue in millimetres; empty when it tells none.
[[nodiscard]] QSizeF queuePaper(const QString& queue);
/// Gives a PDF document to a queue, with the paper that it shall be printed on unless that is empty. What is
/// wrong when it is not taken, "" when it is.
[[nodiscard]] QString submitDocument(const QString& queue, const QString& title, const QByteArray& pdf,
                                     QSizeF paper);

} // namespace devices
