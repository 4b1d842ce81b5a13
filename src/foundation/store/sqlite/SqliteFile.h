#pragma once

#include <QString>

#include <memory>

struct sqlite3;

/// What must be known about a store's file before the engine may touch it.
namespace store {

/// Marks our stores among all files of the engine's format (bytes 68 to 71 of the header).
inline constexpr int applicationId = 0x4D564E31;

/// Raises 3024 missing, 3050 no right to read, 3049 cut short, 3343 not a store of ours. Reads the header and
/// changes nothing.
void checkHeader(const QString& file);

/// True for a folder on a network file system, where shared memory between machines does not work.
[[nodiscard]] bool onNetwork(const QString& file);
/// Replaces the test behind onNetwork; nullptr brings the real one back.
void setNetworkProbe(bool (*probe)(const QString& file));

/// Tells who has the store open where the engine itself does not hold a lock between statements: on a network
/// folder. The lock stands on a file beside the store and dies with the process.
class UserLock {
  public:
    UserLock(const QString& file, bool exclusive); ///< raises 3045, 3050
    ~UserLock();
    UserLock(const UserLock&) = delete;
    UserLock& operator=(const UserLock&) = delete;

  private:
    sqlite3* m_db = nullptr;
};

} // namespace store
