#pragma once

#include <QString>

#include <memory>
#include <vector>

class Recordset;

/// A person in the list of a login: key "ID" + number, text first name and name.
struct LoginEntry {
    QString Key, Text;
};

enum class LoginResult {
    Done,
    NotFound, ///< deleted meanwhile; the list has to be filled again
    Blocked,
    WrongPin,
};

/// The rules of frmLogin. Keeps the set of active people open as long as it lives. What there is to say about
/// a refusal has been said when a routine returns.
class Login {
  public:
    Login();
    ~Login();

    /// The people who are not blocked, read anew.
    std::vector<LoginEntry> LoadUsers();
    /// Compares the PIN as text. Fills gUser from the row as soon as the person was found, so gUser counts
    /// only after Done. Raises what GetKeyID and the store raise.
    LoginResult Anmelden(const QString& Key, const QString& PIN);

  private:
    std::unique_ptr<Recordset> m_personal;
};

/// The rules of frmDesktopLogin: lists everybody and fills gKassenUser only when the PIN is right.
class DesktopLogin {
  public:
    DesktopLogin();
    ~DesktopLogin();

    /// Everybody, blocked ones too.
    std::vector<LoginEntry> LoadUsers();
    /// gKassenUser.Result is 1 after Done; it stays untouched by NotFound and is 0 after a refusal.
    LoginResult Anmelden(const QString& Key, const QString& PIN);

  private:
    std::unique_ptr<Recordset> m_personal;
};
