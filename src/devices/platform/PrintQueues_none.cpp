#include "../PrintQueues.h"

namespace devices {

// Without a print system that we know, the PDF printer is the one there is.
PrintQueues printQueues() { return {}; }

QSizeF queuePaper(const QString&) { return {}; }

QString submitDocument(const QString& queue, const QString&, const QByteArray&, QSizeF) { return queue; }

} // namespace devices
