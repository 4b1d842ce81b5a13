#pragma once

#include <QString>
#include <QTemporaryDir>

/// A place of its own for a test's store, not made yet: a file in a folder that goes with the object, or,
/// where the environment variable MERIVANE_TEST_STORE names a server's database, a schema that is dropped
/// with it.
///
///     TestStore place;
///     auto db = Database::CreateDatabase(place.name());
class TestStore {
  public:
    TestStore();
    ~TestStore();
    TestStore(const TestStore&) = delete;
    TestStore& operator=(const TestStore&) = delete;

    [[nodiscard]] static bool onServer();
    /// For Database::CreateDatabase and the console.
    [[nodiscard]] QString name() const { return m_name; }
    /// A folder for whatever else the test needs.
    [[nodiscard]] QString filePath(const QString& file) const { return m_folder.filePath(file); }
    [[nodiscard]] QString folder() const { return m_folder.path(); }
    /// Takes away what is in the place.
    void clear() const;

  private:
    QTemporaryDir m_folder;
    QString m_schema;
    QString m_name;
};
