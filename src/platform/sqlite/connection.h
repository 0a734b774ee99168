// A store's connection to its database: who may use it when, and the transaction that is open.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Transaction.h>

#include "platform/linux/descriptor.h"
#include "platform/registry.h"
#include "platform/sqlite/names.h"
#include "platform/sqlite/tables.h"

namespace velto::platform {

// May be called from any thread: each call waits for its turn, and for the end of a transaction
// that another thread has open. No exception leaves it.
class RegistryConnection {
  public:
    using Action = std::function<Status(RegistryTables&)>;

    // A write transaction with its locks. It belongs to the thread that began it, which has the
    // connection to itself until the transaction ends; the destructor takes it back.
    class Transaction {
      public:
        ~Transaction();
        Transaction(const Transaction&) = delete;
        Transaction& operator=(const Transaction&) = delete;
        // Once. Also fails, and takes everything back, if a Write in it failed before.
        Status Commit();

      private:
        friend class RegistryConnection;
        explicit Transaction(RegistryConnection& connection);
        Status Begin();
        void End();

        RegistryConnection& connection_;
        std::unique_lock<std::recursive_mutex> turn_;
        Descriptor write_lock_;
        std::optional<SQLite::Transaction> transaction_;
    };

    explicit RegistryConnection(std::string file) : file_(std::move(file)) {}

    Status Open(std::span<const RegistryWrite> first_values);

    // Other, if this thread has a transaction open already.
    Result<std::unique_ptr<Transaction>> Begin();
    // `action` reads the last state committed or, inside this thread's transaction, its own.
    Status Read(const Action& action);
    // `action` is a part of this thread's transaction, or else one of its own.
    Status Write(const Action& action);
    // `action` reads the state of one moment, however long it takes and whatever is written
    // meanwhile, by itself too. Inside this thread's transaction it is a Read like any other.
    Status ReadOneMoment(const Action& action);

    // For an action: becomes true when this thread's open transaction is taken back. Null if none
    // is open.
    std::shared_ptr<const bool> taken_back() const { return taken_back_; }

  private:
    Status CheckOpen() const;

    std::string file_;
    std::recursive_mutex mutex_;
    std::unique_ptr<SQLite::Database> database_;
    std::optional<RegistryTables> tables_;

    // Of the open transaction.
    std::shared_ptr<bool> taken_back_;  // null if none is open
    Status failure_;                    // the first one
};

}  // namespace velto::platform
