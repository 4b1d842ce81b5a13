#include "../PrintQueues.h"

#include <cups/cups.h>

namespace devices {

PrintQueues printQueues() {
    PrintQueues queues;
    cups_dest_t* destinations = nullptr;
    const int count = cupsGetDests(&destinations);
    for (int i = 0; i < count; ++i) {
        if (destinations[i].instance) continue; // a set of options over a queue, not a printer of its own
        const QString name = QString::fromUtf8(destinations[i].name);
        queues.names << name;
        if (destinations[i].is_default) queues.defaultName = name;
    }
    cupsFreeDests(count, destinations);
    return queues;
}

} // namespace devices
