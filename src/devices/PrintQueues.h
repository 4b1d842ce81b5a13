#pragma once

#include <QByteArray>
#include <QStringList>

namespace devices {

struct PrintQueues {
    QStringList names;
    QString defaultName; ///< "" when the system has none
};
/// What the print system of the platform knows.
[[nodiscard]] PrintQueues printQueues();
/// Gives a PDF document to a queue. What is wrong when it is not taken, "" when it is.
[[nodiscard]] QString submitDocument(const QString& queue, const QString& title, const QByteArray& pdf);

} // namespace devices
