#pragma once

#include <QString>

#include <functional>
#include <memory>

class Database;
class RuntimeError;
class Waiter;

/// The shop's store when it lies on a server, where [GLOBAL] DBServer of konfig.ini says: a connection URI
/// such as "postgresql://kasse@server/laden". Empty: the store is the file in gDBPath.

/// The address of konfig.ini, "" for none.
[[nodiscard]] QString ReadServerAddress();
/// What is wrong with the form of an address, as a German sentence; empty when nothing is.
[[nodiscard]] QString ServerAddressFault(const QString& address);
/// The address with dots in place of its passwords, for screens.
[[nodiscard]] QString ShownServerAddress(const QString& address);
/// What a person made of a shown address, with the passwords of `address` where the dots still stand.
[[nodiscard]] QString EnteredServerAddress(const QString& shown, const QString& address);

/// Runs `open` in a thread of its own and lets `waiter` keep the screen alive meanwhile; gives or raises what
/// it gave. For what may wait for a network.
[[nodiscard]] std::unique_ptr<Database> OpenInBackground(std::function<std::unique_ptr<Database>()> open,
                                                         Waiter& waiter);
/// Opens the shop's store on a server; raises what Database::OpenDatabase does.
[[nodiscard]] std::unique_ptr<Database> OpenServerStore(const QString& address, Waiter& waiter);
/// Makes the tables of a shop in an empty database, or opens those that another till has made meanwhile.
[[nodiscard]] std::unique_ptr<Database> CreateServerStore(const QString& address, Waiter& waiter);

/// The database exists and there is nothing in it: CreateServerStore may fill it.
[[nodiscard]] bool IsEmptyServer(const RuntimeError& error);
/// True for what a person can mend at the server, the network or the settings.
[[nodiscard]] bool IsServerTrouble(const RuntimeError& error);
