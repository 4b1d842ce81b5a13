#pragma once

#include <devices/SerialControl.h>

#include <QDateTime>
#include <QString>

#include <functional>

namespace till {

/// The display of two rows with 20 characters that the customer reads. Each message opens the port, goes out
/// and closes the port again. A till without a display, or whose display is away, works without one. A
/// display that takes no bytes is told in passing and gets no message for a minute, so that no scan waits for
/// it; only a text that it cannot show is raised, and then the port stays open until the next message or
/// Close.
class CustomerDisplay {
  public:
    /// `tell` shows a line without stopping anybody.
    explicit CustomerDisplay(std::function<void(const QString&)> tell)
        : m_tell(std::move(tell)) {}
    /// `Opened` tells whether the port is open; whatever fails leaves it closed and is told nowhere. A port
    /// below 1 is none.
    void OpenComPort(int Port, bool& Opened);

    void ShowDefault(); ///< the thanks of a till at rest
    /// A line of the list as it stands there. Raises 5 when quantity, unit and price take more than 20
    /// characters.
    void ShowLine(const QString& name, const QString& anz, const QString& menge, const QString& preis);
    /// The amount to pay, `caption` being the text of the total. `rounded` shows it with two decimals, in the
    /// place of the longer text. Raises 5 for a text of more than 20 characters, 13 for one that is no
    /// amount.
    void ShowTotal(const QString& caption, bool rounded);
    /// Closes the port when a message left it open.
    void Close();

  private:
    /// `text` makes the text of the message when the display has been cleared for it.
    template <typename Text>
    void show(const Text& text);
    /// Gives the port something to do; false when the display does not take it.
    template <typename Act>
    [[nodiscard]] bool reaches(const Act& act);
    [[nodiscard]] bool rests() const;

    SerialControl mainCom;
    std::function<void(const QString&)> m_tell;
    QDateTime m_failed; ///< invalid while the display works
};

} // namespace till
