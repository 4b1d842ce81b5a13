#include "../PrintQueues.h"

namespace devices {

// Without a print system that we know, the PDF printer is the one there is.
PrintQueues printQueues() { return {}; }

} // namespace devices
