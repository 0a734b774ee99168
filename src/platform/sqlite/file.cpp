#include "platform/sqlite/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include "platform/linux/system_error.h"
#include "platform/sqlite/names.h"
#include "platform/sqlite/tables.h"

namespace velto::platform {
namespace {

using DatabasePointer = std::unique_ptr<SQLite::Database>;

constexpr std::int64_t kApplicationId = 0x56454C54;  // "VELT"
constexpr int kLayoutVersion = 1;

// What is left to wait for behind the write lock: a recovery, or another process's last close.
constexpr int kBusyTimeoutMs = 10'000;

// The start of a database's header (https://www.sqlite.org/fileformat2.html, section 1.3).
constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr sqlite3_int64 kApplicationIdOffset = 68;  // 4 bytes, big-endian

enum class FileState { Empty, WithoutLog, Ready };

ErrorKind KindOf(int code) {
    switch (code & 0xFF) {  // the primary code of an extended one
        case SQLITE_FULL:
            return ErrorKind::Full;
        case SQLITE_READONLY:
        case SQLITE_CANTOPEN:
        case SQLITE_PERM:
            return ErrorKind::Denied;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            return ErrorKind::Malformed;
        default:
            return ErrorKind::Other;
    }
}

DatabasePointer Connect(const std::string& file, int extra_flags) {
    return std::make_unique<SQLite::Database>(
        file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | extra_flags, kBusyTimeoutMs);
}

void Configure(SQLite::Database& database) {
    database.exec("PRAGMA synchronous = FULL");
    // Of the log of one large transaction, only this much stays behind.
    database.exec("PRAGMA journal_size_limit = 4194304");
}

std::int64_t Pragma(SQLite::Database& database, const char* name) {
    return database.execAndGet(std::string("PRAGMA ") + name).getInt64();
}

// Whether the file is a database without the registry's mark. Looked up before SQLite is asked,
// which would tidy up what another program left, and through SQLite's own descriptor, since
// closing a second one would drop all locks that this process has on the file.
bool IsOfAnotherProgram(SQLite::Database& database) {
    sqlite3_file* file = nullptr;
    std::array<char, kMagic.size()> magic{};
    std::array<unsigned char, 4> id{};
    database.check(sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_FILE_POINTER,
                                        static_cast<void*>(&file)));
    const auto read = [&](auto& bytes, sqlite3_int64 offset) {
        return file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), offset) ==
               SQLITE_OK;
    };
    if (!read(magic, 0) || std::string_view(magic.data(), magic.size()) != kMagic) return false;
    if (!read(id, kApplicationIdOffset)) return false;
    std::int64_t number = 0;
    for (const auto byte : id) number = number << 8 | byte;
    return number != kApplicationId;
}

Result<FileState> CheckContent(SQLite::Database& database, const std::string& file) {
    const SQLite::Transaction moment(database);
    if (Pragma(database, "page_count") == 0) return FileState::Empty;
    if (Pragma(database, "application_id") != kApplicationId) {
        return Error{ErrorKind::Unsuitable, file, "it is a database of another program"};
    }
    const auto version = Pragma(database, "user_version");
    if (version > kLayoutVersion) {
        return Error{ErrorKind::Unsuitable, file, "it was made by a later version of this program"};
    }
    if (version != kLayoutVersion) {
        return Error{ErrorKind::Malformed, file, "it has no version of this program"};
    }
    const auto mode = database.execAndGet("PRAGMA journal_mode").getString();
    return mode == "wal" ? FileState::Ready : FileState::WithoutLog;
}

// Lays out the empty database with its first values.
Status Fill(SQLite::Database& database, std::span<const RegistryWrite> first_values) {
    SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
    RegistryTables::Create(database);
    RegistryTables tables(database);
    for (const auto& [path, name, value] : first_values) {
        const auto key = ParseKeyPath(path);
        if (!key.ok()) return key.error();
        if (auto checked = CheckValue(name, value); !checked.ok()) return checked;
        tables.PutValue(tables.MakeKey(key.value()).id, name, value);
    }
    database.exec("PRAGMA application_id = " + std::to_string(kApplicationId) +
                  "; PRAGMA user_version = " + std::to_string(kLayoutVersion));
    transaction.commit();
    return {};
}

// Under the write lock: makes what `database` still lacks.
Status Finish(SQLite::Database& database, const std::string& file,
              std::span<const RegistryWrite> first_values) {
    // Another process may have done it while this one waited for the lock.
    auto state = CheckContent(database, file);
    if (!state.ok()) return state.error();
    if (state.value() == FileState::Ready) return {};
    if (state.value() == FileState::Empty) {
        auto filled = Fill(database, first_values);
        if (!filled.ok()) return Error{filled.error().kind, file, filled.error().text};
    }
    const auto mode = database.execAndGet("PRAGMA journal_mode = WAL").getString();
    if (mode == "wal") return {};
    return Error{ErrorKind::Other, file, "no write-ahead log can be kept there"};
}

Status CheckWritable(const std::string& file) {
    for (const char* ending : {"", "-wal", "-shm"}) {
        const auto path = file + ending;
        if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) {
            return SystemError(file);
        }
    }
    return {};
}

// Whether there is such a file. One that SQLite would open although it can't write it, or isn't
// meant for, is a failure.
Result<bool> IsThere(const std::string& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        if (errno == ENOENT) return false;
        return SystemError(file);
    }
    if (!S_ISREG(status.st_mode)) return Error{ErrorKind::Unsuitable, file, "not a regular file"};
    if (auto writable = CheckWritable(file); !writable.ok()) return writable.error();
    return true;
}

// Whether `database` is there and lacks nothing.
Result<bool> OpenFinished(const std::string& file, DatabasePointer& database) {
    auto there = IsThere(file);
    if (!there.ok() || !there.value()) return there;
    database = Connect(file, 0);
    if (IsOfAnotherProgram(*database)) {
        return Error{ErrorKind::Unsuitable, file, "it is a database of another program"};
    }
    Configure(*database);
    const auto state = CheckContent(*database, file);
    if (!state.ok()) return state.error();
    return state.value() == FileState::Ready;
}

Status OpenOrMake(const std::string& file, std::span<const RegistryWrite> first_values,
                  DatabasePointer& database) {
    // Mostly nothing is to be made, and then a start waits for no writer.
    const auto finished = OpenFinished(file, database);
    if (!finished.ok()) return finished.error();
    if (finished.value()) return {};

    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path(), error);
    if (error) return SystemError(file, error.value());
    const auto lock = TakeWriteLock(file);
    if (!lock.ok()) return lock.error();
    if (!database) {
        database = Connect(file, SQLITE_OPEN_CREATE);
        Configure(*database);
    }
    return Finish(*database, file, first_values);
}

}  // namespace

Result<Descriptor> TakeWriteLock(const std::string& file) {
    constexpr mode_t kMode = 0666;  // less the umask
    const std::string name = file + ".lock";
    // Read-only, for a lock file that another user made: a lock takes no right to write.
    Descriptor lock(
        Retrying([&] { return open(name.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, kMode); }));
    if (!lock.valid()) return SystemError(file);
    if (Retrying([&] { return flock(lock.get(), LOCK_EX); }) != 0) return SystemError(file);
    return lock;
}

Result<DatabasePointer> OpenRegistryFile(const std::string& file,
                                         std::span<const RegistryWrite> first_values) {
    DatabasePointer database;
    const auto opened =
        CatchDatabaseErrors(file, [&] { return OpenOrMake(file, first_values, database); });
    if (!opened.ok()) return opened.error();
    return database;
}

DatabasePointer ConnectToRegistryFile(const std::string& file) {
    return Connect(file, 0);
}

Status CatchDatabaseErrors(const std::string& file, const std::function<Status()>& action) {
    try {
        return action();
    } catch (const SQLite::Exception& exception) {
        return Error{KindOf(exception.getErrorCode()), file, exception.what()};
    }
}

}  // namespace velto::platform
