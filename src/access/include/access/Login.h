#pragma once

#include <QString>

#include <vector>

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

/// The rules behind the two logins. A PIN is compared as text with what the store holds at this moment. What
/// there is to say about a refusal has been said when a routine returns. All raise what GetKeyID and the
/// store raise.

/// For frmLogin: the people who are not blocked.
[[nodiscard]] std::vector<LoginEntry> LoadActiveUsers();
/// For frmLogin: fills gUser as soon as the person was found, so gUser counts only after Done.
LoginResult Anmelden(const QString& Key, const QString& PIN);

/// For frmDesktopLogin: fills gKassenUser only when the PIN is right. Its Result is 1 after Done and 0 after
/// a refusal; NotFound leaves it as it is.
LoginResult KassenAnmelden(const QString& Key, const QString& PIN);
