#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace store {

/// Where a store on a server lies, as its connection URI tells. The URI is handed to the client library as it
/// stands, so everything holds that the library knows: several hosts, TLS, password and service files.
class PostgresAddress {
  public:
    /// Raises 3024 when the text is no URI.
    explicit PostgresAddress(const QString& uri);

    [[nodiscard]] const QByteArray& uri() const { return m_uri; }
    [[nodiscard]] QString host() const; ///< as it is named, "" for this machine or a service file
    [[nodiscard]] int hosts() const;    ///< how many are named, at least 1
    /// Seconds that one host has to answer, 5 unless the URI tells another time.
    [[nodiscard]] int patience() const;
    /// "kasse@server/laden", for messages: never with the password.
    [[nodiscard]] QString shown() const;

  private:
    [[nodiscard]] QByteArray option(const char* name) const;
    QByteArray m_uri;
    std::vector<std::pair<QByteArray, QByteArray>> m_options;
};

} // namespace store
