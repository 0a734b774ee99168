#include "platform/sqlite/connection.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/linux/system_error.h"
#include "platform/sqlite/file.h"

namespace velto::platform {

RegistryConnection::Transaction::Transaction(RegistryConnection& connection)
    : connection_(connection), turn_(connection.mutex_) {}

RegistryConnection::Transaction::~Transaction() {
    End();
}

Status RegistryConnection::Transaction::Begin() {
    // SQLite's own lock is tried again and again by all who wait for it, and some of many writers
    // starve; behind this one they stand in a row.
    auto lock = TakeWriteLock(connection_.file_);
    if (!lock.ok()) return lock.error();
    write_lock_ = std::move(lock).value();
    auto begun = CatchDatabaseErrors(connection_.file_, [&] {
        transaction_.emplace(*connection_.database_, SQLite::TransactionBehavior::IMMEDIATE);
        return Status();
    });
    if (!begun.ok()) return begun;
    connection_.taken_back_ = std::make_shared<bool>(false);
    connection_.failure_ = Status();
    return {};
}

Status RegistryConnection::Transaction::Commit() {
    auto committed = connection_.failure_;
    if (committed.ok()) {
        committed = CatchDatabaseErrors(connection_.file_, [&] {
            transaction_->commit();
            return Status();
        });
    }
    if (committed.ok()) connection_.taken_back_.reset();
    End();
    return committed;
}

void RegistryConnection::Transaction::End() {
    if (transaction_) {
        if (connection_.taken_back_) *connection_.taken_back_ = true;
        connection_.taken_back_.reset();
        transaction_.reset();
    }
    write_lock_.Reset();
    if (turn_.owns_lock()) turn_.unlock();
}

Status RegistryConnection::CheckOpen() const {
    if (database_) return {};
    return Error{ErrorKind::Other, file_, "the registry isn't open"};
}

Status RegistryConnection::Open(std::span<const RegistryWrite> first_values) {
    const std::unique_lock turn(mutex_);
    std::error_code error;
    const auto absolute = std::filesystem::absolute(file_, error);
    if (error) return SystemError(file_, error.value());
    file_ = absolute.string();
    auto opened = OpenRegistryFile(file_, first_values);
    if (!opened.ok()) return opened.error();
    database_ = std::move(opened).value();
    tables_.emplace(*database_);
    return {};
}

Result<std::unique_ptr<RegistryConnection::Transaction>> RegistryConnection::Begin() {
    const std::unique_lock turn(mutex_);
    if (auto open = CheckOpen(); !open.ok()) return open.error();
    if (taken_back_) return Error{ErrorKind::Other, file_, "a transaction is open already"};
    std::unique_ptr<Transaction> transaction(new Transaction(*this));
    if (auto begun = transaction->Begin(); !begun.ok()) return begun.error();
    return transaction;
}

Status RegistryConnection::Read(const Action& action) {
    const std::unique_lock turn(mutex_);
    if (auto open = CheckOpen(); !open.ok()) return open;
    return CatchDatabaseErrors(file_, [&] { return action(*tables_); });
}

Status RegistryConnection::Write(const Action& action) {
    const std::unique_lock turn(mutex_);
    if (!taken_back_) {
        const auto transaction = Begin();
        if (!transaction.ok()) return transaction.error();
        if (auto written = Write(action); !written.ok()) return written;
        return transaction.value()->Commit();
    }
    // After a failure SQLite may have ended the transaction by itself, so that a further write
    // would come into force alone.
    if (!failure_.ok()) return failure_;
    failure_ = CatchDatabaseErrors(file_, [&] { return action(*tables_); });
    return failure_;
}

Status RegistryConnection::ReadOneMoment(const Action& action) {
    std::unique_lock turn(mutex_);
    if (auto open = CheckOpen(); !open.ok()) return open;
    if (taken_back_) {
        // Statements of its own, since `action` may use the store while it steps through one.
        RegistryTables tables(*database_);
        return CatchDatabaseErrors(file_, [&] { return action(tables); });
    }
    // On a connection of its own, for which nobody waits: neither other threads nor `action`, if it
    // writes.
    turn.unlock();
    return CatchDatabaseErrors(file_, [&] {
        const auto database = ConnectToRegistryFile(file_);
        const SQLite::Transaction moment(*database);
        RegistryTables tables(*database);
        return action(tables);
    });
}

}  // namespace velto::platform
