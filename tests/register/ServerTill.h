#pragma once

#include "Till.h"

#include <support/PostgresProxy.h>
#include <support/PostgresServer.h>

/// A server of its own and a line to it that can be cut.
class ServerAndLine {
  protected:
    ServerAndLine() {
        if (!PostgresServer::available()) return;
        server = std::make_unique<PostgresServer>();
        server->createDatabase(u"laden"_s);
        proxy = std::make_unique<PostgresProxy>(server->port());
    }
    [[nodiscard]] QString address() const {
        return server ? server->uri(u"laden"_s, proxy->port()) : QString();
    }

    std::unique_ptr<PostgresServer> server;
    std::unique_ptr<PostgresProxy> proxy;
};

/// A till whose shop is on that server.
class ServerTill : protected ServerAndLine, public Till {
  protected:
    ServerTill()
        : Till(address()) {}
    void SetUp() override {
        if (!server) GTEST_SKIP() << "no server installed";
        shop.article(u"1"_s, u"Tee"_s, 10, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 100}});
        shop.article(u"2"_s, u"Buch"_s, 20, {{u"LagerAktiv"_s, true}, {u"IstBestand"_s, 100}});
        Till::SetUp();
    }
    /// One value as the server itself has it, whatever became of the till's connection.
    [[nodiscard]] QString onServer(const QString& query) const { return server->sql(u"laden"_s, query); }
};
