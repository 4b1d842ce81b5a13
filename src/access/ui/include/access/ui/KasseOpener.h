#pragma once

#include <QPointer>
#include <QWidget>

#include <functional>

/// Makes the register, shows it and calls `unloaded` when it has been closed. Given from above.
using KasseFactory = std::function<QWidget*(std::function<void()> unloaded)>;

/// The one register window of the process, opened from the login or from the shell.
class KasseOpener : public QObject {
    Q_OBJECT

  public:
    explicit KasseOpener(KasseFactory factory, QObject* parent = nullptr);
    /// From the login: fills gKassenUser, sees to the till balance, shows the register. Raises what these
    /// raise.
    void StartKasse();
    /// From the shell: also refuses blocked people.
    void OpenKasse();
    [[nodiscard]] bool isOpen() const;
    /// Closes the register; False when it refused, because of an open sale.
    bool close();

  signals:
    void Unloaded();

  private:
    void show();
    KasseFactory m_factory;
    QPointer<QWidget> m_kasse;
};
