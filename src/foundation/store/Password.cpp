#include "Password.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QRandomGenerator>

#include <array>

namespace store {

namespace {
// A start checks up to four passwords, so one check must stay at a few milliseconds.
constexpr int todaysIterations = 1000;
} // namespace

QByteArray pbkdf2(const QByteArray& password, const QByteArray& salt, int iterations) {
    QMessageAuthenticationCode mac(QCryptographicHash::Sha256, password);
    mac.addData(salt);
    mac.addData(QByteArray("\0\0\0\1", 4));
    QByteArray block = mac.result();
    QByteArray derived = block;
    for (int i = 1; i < iterations; ++i) {
        mac.reset();
        mac.addData(block);
        block = mac.result();
        for (qsizetype k = 0; k < derived.size(); ++k)
            derived[k] = static_cast<char>(static_cast<unsigned char>(derived[k]) ^
                                           static_cast<unsigned char>(block[k]));
    }
    return derived;
}

PasswordVerifier PasswordVerifier::make(const QString& password) {
    std::array<quint32, 4> random{};
    QRandomGenerator::system()->fillRange(random.data(), random.size());
    PasswordVerifier verifier;
    verifier.salt = QByteArray(reinterpret_cast<const char*>(random.data()), sizeof random);
    verifier.iterations = todaysIterations;
    verifier.derived = pbkdf2(password.toUtf8(), verifier.salt, verifier.iterations);
    return verifier;
}

bool PasswordVerifier::accepts(const QString& password) const {
    if (password.isEmpty()) return false;
    return pbkdf2(password.toUtf8(), salt, iterations) == derived;
}

} // namespace store
