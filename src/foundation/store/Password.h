#pragma once

#include <QByteArray>
#include <QString>

/// The store's password is a lock on the door, not an encryption: the file keeps a salted verifier from which
/// the password cannot be read, and only this program asks for it.
namespace store {

struct PasswordVerifier {
    QByteArray salt;
    int iterations = 0;
    QByteArray derived;
    /// A fresh salt and the number of iterations of today.
    static PasswordVerifier make(const QString& password);
    [[nodiscard]] bool accepts(const QString& password) const;
};

/// PBKDF2 with HMAC-SHA-256, one block of 32 bytes.
[[nodiscard]] QByteArray pbkdf2(const QByteArray& password, const QByteArray& salt, int iterations);

} // namespace store
