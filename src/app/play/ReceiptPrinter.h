#pragma once

#include <QByteArray>
#include <QString>

#include <mutex>
#include <optional>
#include <thread>

namespace play {

/// A receipt printer at the other end of a pseudo-terminal: the till writes to device() as to any serial
/// line. A thread takes the bytes in, so that the till is never held up.
class ReceiptPrinter {
  public:
    ReceiptPrinter(); ///< raises 70 when the system gives no pseudo-terminal
    ~ReceiptPrinter();
    ReceiptPrinter(const ReceiptPrinter&) = delete;
    ReceiptPrinter& operator=(const ReceiptPrinter&) = delete;

    [[nodiscard]] const QString& device() const { return m_device; }
    /// The next receipt up to and with its cut, once it has arrived.
    [[nodiscard]] std::optional<QByteArray> takeReceipt();
    /// Bytes that belong to no complete receipt yet.
    [[nodiscard]] QByteArray pending() const;

  private:
    void read();
    int m_master = -1, m_slave = -1;
    int m_stop[2] = {-1, -1};
    QString m_device;
    mutable std::mutex m_mutex;
    QByteArray m_bytes;
    std::thread m_reader;
};

/// What a person would read on the paper: printer commands left out, centred lines centred on 40 characters.
[[nodiscard]] QString receiptText(const QByteArray& bytes);

} // namespace play
