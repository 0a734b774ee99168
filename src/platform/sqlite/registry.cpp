#include "platform/registry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/sqlite/connection.h"
#include "platform/sqlite/names.h"
#include "platform/sqlite/tables.h"

namespace velto::platform {
namespace {

Error NoKey(std::string_view path) {
    return {ErrorKind::NotFound, std::string(path), "there is no such key"};
}

// Shows the key with all below it. Holds one name for each level, whatever the number of keys.
Status ShowBranch(RegistryTables& tables, const StoredKey& top, RegistryVisitor& visitor) {
    struct Level {
        std::int64_t key;
        std::size_t path_length;
        std::string last_subkey;  // the one shown last; empty in front of the first
    };
    std::vector<Level> levels;
    std::string path = top.path;
    const auto show = [&](std::int64_t key) -> Status {
        levels.push_back({key, path.size(), {}});
        if (auto shown = visitor.OnKey(path); !shown.ok()) return shown;
        return tables.ShowValues(key, visitor);
    };
    if (auto shown = show(top.id); !shown.ok()) return shown;
    while (!levels.empty()) {
        auto& level = levels.back();
        path.resize(level.path_length);
        const auto subkey = tables.SubkeyBehind(level.key, level.last_subkey, 0);
        if (!subkey) {
            levels.pop_back();
            continue;
        }
        level.last_subkey = subkey->path;
        path.append("\\").append(subkey->path);
        if (auto shown = show(subkey->id); !shown.ok()) return shown;
    }
    return {};
}

class SqliteKey : public RegistryKey {
  public:
    SqliteKey(RegistryConnection& connection, StoredKey key, std::shared_ptr<const bool> gone)
        : connection_(connection), key_(std::move(key)), gone_(std::move(gone)) {}

    Result<RegistryValue> Query(std::string_view name) override {
        std::optional<RegistryValue> value;
        auto read =
            Read([&](auto& tables) { value = tables.FindValue(key_.id, std::string(name)); });
        if (!read.ok()) return read.error();
        if (value) return *std::move(value);
        return Error{ErrorKind::NotFound, std::string(name), "there is no such value"};
    }

    Status Set(std::string_view name, const RegistryValue& value) override {
        if (auto checked = CheckValue(name, value); !checked.ok()) return checked;
        return connection_.Write([&](RegistryTables& tables) -> Status {
            if (IsGone()) return NoKey(key_.path);
            tables.PutValue(key_.id, std::string(name), value);
            return {};
        });
    }

    Result<std::optional<std::string>> EnumerateSubkey(std::size_t index) override {
        std::optional<StoredKey> found;
        auto read = Read([&](auto& tables) {
            const auto from = subkey_.StartFor(index);
            found = tables.SubkeyBehind(key_.id, from.last, index - from.count);
            if (found && !connection_.taken_back()) subkey_ = {index + 1, found->path};
        });
        if (!read.ok()) return read.error();
        if (!found) return std::optional<std::string>();
        return std::optional(std::move(found->path));
    }

    Result<std::optional<RegistryValueName>> EnumerateValue(std::size_t index) override {
        std::optional<StoredValueName> found;
        auto read = Read([&](auto& tables) {
            const auto from = value_.StartFor(index);
            found = tables.ValueBehind(key_.id, from.last, index - from.count);
            if (found && !connection_.taken_back()) value_ = {index + 1, found->id};
        });
        if (!read.ok()) return read.error();
        if (!found) return std::optional<RegistryValueName>();
        return std::optional(std::move(found->value));
    }

    Status Close() override { return {}; }

  private:
    // How far an enumeration has come, so that the next one isn't counted out from the start. Not
    // kept inside a transaction, which may be taken back.
    template <class Last>
    struct Place {
        std::size_t count = 0;
        Last last{};
        Place StartFor(std::size_t index) const { return index < count ? Place() : *this; }
    };

    // Its row may have another key's number by now.
    bool IsGone() const { return gone_ && *gone_; }

    template <class Action>
    Status Read(const Action& action) {
        return connection_.Read([&](RegistryTables& tables) -> Status {
            if (IsGone()) return NoKey(key_.path);
            action(tables);
            return {};
        });
    }

    RegistryConnection& connection_;
    StoredKey key_;
    std::shared_ptr<const bool> gone_;
    Place<std::string> subkey_;
    Place<std::int64_t> value_;
};

class SqliteTransaction : public RegistryTransaction {
  public:
    SqliteTransaction(RegistryConnection& connection,
                      std::unique_ptr<RegistryConnection::Transaction> transaction)
        : connection_(connection), transaction_(std::move(transaction)) {}

    Status CreateKey(std::string_view path) override {
        if (last_key_ != 0 && path == last_path_) return {};
        auto components = ParseKeyPath(path);
        if (!components.ok()) return components.status();
        return connection_.Write([&](RegistryTables& tables) {
            last_key_ = tables.MakeKey(components.value()).id;
            last_path_ = path;
            return Status();
        });
    }

    Status SetValue(std::string_view path, std::string_view name,
                    const RegistryValue& value) override {
        if (auto checked = CheckValue(name, value); !checked.ok()) return checked;
        if (auto created = CreateKey(path); !created.ok()) return created;
        return connection_.Write([&](RegistryTables& tables) {
            tables.PutValue(last_key_, std::string(name), value);
            return Status();
        });
    }

    Status Commit() override { return transaction_->Commit(); }

  private:
    RegistryConnection& connection_;
    std::unique_ptr<RegistryConnection::Transaction> transaction_;
    std::string last_path_;  // values mostly follow others of the same key
    std::int64_t last_key_ = 0;
};

class SqliteRegistry : public RegistryStore {
  public:
    explicit SqliteRegistry(std::string file) : connection_(std::move(file)) {}

    Status OpenStore(std::span<const RegistryWrite> first_values) override {
        return connection_.Open(first_values);
    }

    Result<std::unique_ptr<RegistryKey>> OpenKey(std::string_view path) override {
        const auto components = ParseKeyPath(path);
        if (!components.ok()) return NoKey(path);
        std::unique_ptr<RegistryKey> key;
        auto read = connection_.Read([&](RegistryTables& tables) -> Status {
            auto found = tables.FindKey(components.value());
            if (!found) return NoKey(path);
            key = std::make_unique<SqliteKey>(connection_, *std::move(found),
                                              connection_.taken_back());
            return {};
        });
        if (!read.ok()) return read.error();
        return key;
    }

    Result<std::unique_ptr<RegistryKey>> CreateKey(std::string_view path) override {
        const auto components = ParseKeyPath(path);
        if (!components.ok()) return components.error();
        auto opened = OpenKey(path);
        if (opened.ok() || opened.error().kind != ErrorKind::NotFound) return opened;
        auto made = connection_.Write([&](RegistryTables& tables) {
            tables.MakeKey(components.value());
            return Status();
        });
        if (!made.ok()) return made.error();
        return OpenKey(path);
    }

    Result<std::unique_ptr<RegistryTransaction>> Begin() override {
        auto transaction = connection_.Begin();
        if (!transaction.ok()) return transaction.error();
        return std::unique_ptr<RegistryTransaction>(
            std::make_unique<SqliteTransaction>(connection_, std::move(transaction).value()));
    }

    Status Visit(std::string_view path, RegistryVisitor& visitor) override {
        const auto components = ParseKeyPath(path);
        if (!components.ok()) return NoKey(path);
        return connection_.ReadOneMoment([&](RegistryTables& tables) -> Status {
            const auto top = tables.FindKey(components.value());
            if (!top) return NoKey(path);
            return ShowBranch(tables, *top, visitor);
        });
    }

  private:
    RegistryConnection connection_;
};

}  // namespace

std::unique_ptr<RegistryStore> MakeSqliteRegistry(std::string file) {
    return std::make_unique<SqliteRegistry>(std::move(file));
}

}  // namespace velto::platform
