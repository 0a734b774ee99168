#include "platform/sqlite/tables.h"

#include <algorithm>
#include <limits>

namespace velto::platform {
namespace {

constexpr std::int64_t kAboveRoots = 0;

// NOCASE folds A to Z alone and compares all other bytes as they are. Rows are never removed, so
// that the order of the ids is that of creation.
constexpr const char* kLayout = R"(
    CREATE TABLE registry_key (
        id INTEGER PRIMARY KEY,
        parent INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        UNIQUE (parent, name));
    CREATE TABLE registry_value (
        id INTEGER PRIMARY KEY,
        key_id INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        type INTEGER NOT NULL,
        data BLOB NOT NULL,
        UNIQUE (key_id, name));
    CREATE INDEX registry_value_order ON registry_value (key_id);
)";

// One run of a prepared statement. One that isn't reset would hold on to the state it reads.
class Run {
  public:
    explicit Run(SQLite::Statement& statement) : statement_(statement) {}
    ~Run() { statement_.tryReset(); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    SQLite::Statement* operator->() { return &statement_; }

  private:
    SQLite::Statement& statement_;
};

RegistryType TypeIn(const SQLite::Column& column) {
    return static_cast<RegistryType>(column.getUInt());
}

std::int64_t RowsToSkip(std::size_t count) {
    constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min<std::uint64_t>(count, kMost));
}

void AppendComponent(std::string& path, const std::string& name) {
    if (!path.empty()) path += '\\';
    path += name;
}

}  // namespace

const std::array<const char*, RegistryTables::kQueryCount> RegistryTables::kTexts = {
    "SELECT id, name FROM registry_key WHERE parent = ? AND name = ?",
    "INSERT INTO registry_key (parent, name) VALUES (?, ?)",
    "SELECT id, name FROM registry_key WHERE parent = ? AND name > ? "
    "ORDER BY name LIMIT 1 OFFSET ?",
    "SELECT type, data FROM registry_value WHERE key_id = ? AND name = ?",
    "INSERT INTO registry_value (key_id, name, type, data) VALUES (?, ?, ?, ?) "
    "ON CONFLICT (key_id, name) DO UPDATE SET type = excluded.type, data = excluded.data",
    "SELECT id, name, type FROM registry_value WHERE key_id = ? AND id > ? "
    "ORDER BY id LIMIT 1 OFFSET ?",
    "SELECT name, type, data FROM registry_value WHERE key_id = ? ORDER BY id",
};

RegistryTables::RegistryTables(SQLite::Database& database) : database_(database) {}

void RegistryTables::Create(SQLite::Database& database) {
    database.exec(kLayout);
}

SQLite::Statement& RegistryTables::Prepared(Query query) {
    auto& statement = statements_.at(query);
    if (!statement) statement.emplace(database_, kTexts.at(query));
    return *statement;
}

std::optional<StoredKey> RegistryTables::FindSubkey(std::int64_t parent, const std::string& name) {
    Run run(Prepared(kFindSubkey));
    run->bind(1, parent);
    run->bindNoCopy(2, name);
    if (!run->executeStep()) return {};
    return StoredKey{run->getColumn(0).getInt64(), run->getColumn(1).getString()};
}

StoredKey RegistryTables::AddSubkey(std::int64_t parent, const std::string& name) {
    Run run(Prepared(kAddSubkey));
    run->bind(1, parent);
    run->bindNoCopy(2, name);
    run->exec();
    return {database_.getLastInsertRowid(), name};
}

std::optional<StoredKey> RegistryTables::FindKey(const KeyPath& path) {
    StoredKey key{kAboveRoots, {}};
    for (const auto& name : path) {
        const auto subkey = FindSubkey(key.id, name);
        if (!subkey) return {};
        key.id = subkey->id;
        AppendComponent(key.path, subkey->path);
    }
    return key;
}

StoredKey RegistryTables::MakeKey(const KeyPath& path) {
    StoredKey key{kAboveRoots, {}};
    for (const auto& name : path) {
        auto subkey = FindSubkey(key.id, name);
        if (!subkey) subkey = AddSubkey(key.id, name);
        key.id = subkey->id;
        AppendComponent(key.path, subkey->path);
    }
    return key;
}

std::optional<StoredKey> RegistryTables::SubkeyBehind(std::int64_t key, const std::string& name,
                                                      std::size_t skipped) {
    Run run(Prepared(kSubkeyBehind));
    run->bind(1, key);
    run->bindNoCopy(2, name);
    run->bind(3, RowsToSkip(skipped));
    if (!run->executeStep()) return {};
    return StoredKey{run->getColumn(0).getInt64(), run->getColumn(1).getString()};
}

std::optional<RegistryValue> RegistryTables::FindValue(std::int64_t key, const std::string& name) {
    Run run(Prepared(kFindValue));
    run->bind(1, key);
    run->bindNoCopy(2, name);
    if (!run->executeStep()) return {};
    return RegistryValue{TypeIn(run->getColumn(0)), run->getColumn(1).getString()};
}

void RegistryTables::PutValue(std::int64_t key, const std::string& name,
                              const RegistryValue& value) {
    Run run(Prepared(kPutValue));
    run->bind(1, key);
    run->bindNoCopy(2, name);
    run->bind(3, static_cast<std::uint32_t>(value.type));
    run->bindNoCopy(4, value.data.data(), static_cast<int>(value.data.size()));
    run->exec();
}

std::optional<StoredValueName> RegistryTables::ValueBehind(std::int64_t key, std::int64_t id,
                                                           std::size_t skipped) {
    Run run(Prepared(kValueBehind));
    run->bind(1, key);
    run->bind(2, id);
    run->bind(3, RowsToSkip(skipped));
    if (!run->executeStep()) return {};
    return StoredValueName{run->getColumn(0).getInt64(),
                           {run->getColumn(1).getString(), TypeIn(run->getColumn(2))}};
}

Status RegistryTables::ShowValues(std::int64_t key, RegistryVisitor& visitor) {
    Run run(Prepared(kAllValues));
    run->bind(1, key);
    while (run->executeStep()) {
        const RegistryValue value{TypeIn(run->getColumn(1)), run->getColumn(2).getString()};
        auto shown = visitor.OnValue(run->getColumn(0).getString(), value);
        if (!shown.ok()) return shown;
    }
    return {};
}

}  // namespace velto::platform
