// The registry's database file: making, opening and checking it, and the lock of its writers.
//
// It is a SQLite database with a write-ahead log, marked by its application id and its version
// of the layout, and made in one transaction together with its first values. Only a file of zero
// bytes or one that isn't there counts as new; whatever else isn't a registry of this version is
// refused and left as it is.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include <SQLiteCpp/Database.h>

#include "platform/linux/descriptor.h"
#include "platform/registry.h"
#include "platform/result.h"

namespace velto::platform {

// `file` is an absolute path: SQLite has another use for names like ":memory:" and "file:x". Its
// write lock is taken only if something is to be made. The error's subject is `file`.
Result<std::unique_ptr<SQLite::Database>> OpenRegistryFile(
    const std::string& file, std::span<const RegistryWrite> first_values);

// One more connection to a file that OpenRegistryFile has opened. Throws SQLite::Exception.
std::unique_ptr<SQLite::Database> ConnectToRegistryFile(const std::string& file);

// By which the writers of `file` take turns, whichever process they belong to: waits until nobody
// else holds the lock of the file of that name with ".lock" behind it. That is made if need be and
// never removed, since others may be waiting on it. The lock is held until the result is closed,
// and ends with the process in any case. A second lock of the same thread would wait for ever.
Result<Descriptor> TakeWriteLock(const std::string& file);

// What `action` returns, or the error of the SQLite::Exception that it threw, about `file`.
Status CatchDatabaseErrors(const std::string& file, const std::function<Status()>& action);

}  // namespace velto::platform
