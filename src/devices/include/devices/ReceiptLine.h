#pragma once

#include <QByteArray>

/// Sends bytes to the receipt printer on COM gPrintDirectIOPort. A printer that pauses (new paper, open
/// cover) is waited for as long as gBonWartezeit says, from each byte on that it takes; when it goes on, the
/// rest follows. After two seconds the WaitScreen in force tells what is waited for and offers to cancel.
/// False when the person did; what had not been sent is dropped then. Raises as <devices/Port.h> does.
[[nodiscard]] bool SendToReceiptPrinter(const QByteArray& bytes);
