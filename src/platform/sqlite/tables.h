// The registry's keys and values as rows of a SQLite database.
//
// No locks, no transactions, no checks of bounds: those are the caller's. Everything here throws
// SQLite::Exception, and nothing of it may be used by two threads at once.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "platform/registry.h"
#include "platform/sqlite/names.h"

namespace velto::platform {

struct StoredKey {
    std::int64_t id = 0;
    std::string path;  // in the stored spelling
};

struct StoredValueName {
    std::int64_t id = 0;
    RegistryValueName value;
};

// `database` must outlive the tables, which keep its statements prepared.
class RegistryTables {
  public:
    explicit RegistryTables(SQLite::Database& database);

    // Lays out an empty database.
    static void Create(SQLite::Database& database);

    std::optional<StoredKey> FindKey(const KeyPath& path);
    // Finds the key, or makes it and what is missing above it.
    StoredKey MakeKey(const KeyPath& path);
    // Of the subkeys whose names come behind `name` ("": of all), the one that `skipped` others
    // precede. Its path is its name alone.
    std::optional<StoredKey> SubkeyBehind(std::int64_t key, const std::string& name,
                                          std::size_t skipped);

    std::optional<RegistryValue> FindValue(std::int64_t key, const std::string& name);
    // An existing value keeps its row and spelling. With this type and these data already in it,
    // SQLite writes nothing.
    void PutValue(std::int64_t key, const std::string& name, const RegistryValue& value);
    // Of the values that were made after the one with this id (0: of all), the one that `skipped`
    // others precede.
    std::optional<StoredValueName> ValueBehind(std::int64_t key, std::int64_t id,
                                               std::size_t skipped);
    Status ShowValues(std::int64_t key, RegistryVisitor& visitor);

  private:
    enum Query : std::size_t {
        kFindSubkey,
        kAddSubkey,
        kSubkeyBehind,
        kFindValue,
        kPutValue,
        kValueBehind,
        kAllValues,
        kQueryCount,
    };
    static const std::array<const char*, kQueryCount> kTexts;

    SQLite::Statement& Prepared(Query query);
    std::optional<StoredKey> FindSubkey(std::int64_t parent, const std::string& name);
    StoredKey AddSubkey(std::int64_t parent, const std::string& name);

    SQLite::Database& database_;
    std::array<std::optional<SQLite::Statement>, kQueryCount> statements_;
};

}  // namespace velto::platform
