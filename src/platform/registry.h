// The registry: a tree of keys, each with typed values, that outlives every program.
//
// A path names a key from its root on: "HKEY_CURRENT_USER\Software\epsxe"; one "\" at the end is
// dropped. Components and value names are 8-bit text. They keep their spelling and compare
// without regard to case (A to Z). The value named "" is the key's default value. Data are exact
// bytes for every type; a string's include its final NUL if it was written with one.
//
// Bounds, over which a write is Malformed: a path has up to kDeepestKey components of 1 to
// kLongestKeyName bytes, a value name up to kLongestValueName, data up to kLargestValue. Names hold
// no NUL, CR or LF.
//
// A store may be called from any thread; a RegistryTransaction keeps all other threads and
// processes from writing until it ends, and belongs to the thread that began it. Keys and
// transactions don't outlive their store.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace velto::platform {

inline constexpr std::size_t kLongestKeyName = 255;
inline constexpr std::size_t kDeepestKey = 512;  // components of a path, the root's included
inline constexpr std::size_t kLongestValueName = 16383;
inline constexpr std::size_t kLargestValue = std::size_t{1} << 20;

// The numbers are those of the Windows registry; any other number is stored as it is.
enum class RegistryType : std::uint32_t {
    None = 0,
    String = 1,
    ExpandString = 2,
    Binary = 3,
    Dword = 4,
    DwordBigEndian = 5,
    Link = 6,
    MultiString = 7,
};

struct RegistryValue {
    RegistryType type = RegistryType::None;
    std::string data;
    bool operator==(const RegistryValue&) const = default;
};

RegistryValue StringValue(std::string_view text);  // with the final NUL
RegistryValue DwordValue(std::uint32_t number);    // 4 bytes, little-endian
// The number in the data of such a value; nothing if they have another length.
std::optional<std::uint32_t> DwordIn(std::string_view data);

struct RegistryValueName {
    std::string name;
    RegistryType type = RegistryType::None;
};

struct RegistryWrite {
    std::string path;
    std::string name;
    RegistryValue value;
};

// An open key. The destructor closes it without a word.
class RegistryKey {
  public:
    virtual ~RegistryKey() = default;
    virtual Result<RegistryValue> Query(std::string_view name) = 0;
    virtual Status Set(std::string_view name, const RegistryValue& value) = 0;
    // By index from 0; nothing behind the last one. Subkeys come in the order of their names,
    // values in that of their creation.
    virtual Result<std::optional<std::string>> EnumerateSubkey(std::size_t index) = 0;
    virtual Result<std::optional<RegistryValueName>> EnumerateValue(std::size_t index) = 0;
    // Once, as the last call.
    virtual Status Close() = 0;
};

// Writes that come into force together. The destructor takes back what wasn't committed.
class RegistryTransaction {
  public:
    virtual ~RegistryTransaction() = default;
    // Makes the key and those above it; success if it exists.
    virtual Status CreateKey(std::string_view path) = 0;
    // Makes the key if need be. An existing value keeps its place and first spelling.
    virtual Status SetValue(std::string_view path, std::string_view name,
                            const RegistryValue& value) = 0;
    // Returns when everything is on the disk. Once, as the last call.
    virtual Status Commit() = 0;
};

// Is shown a key with everything below it: each key in front of its values, these in front of
// its subkeys. A failure that a call returns ends the walk and is its result.
class RegistryVisitor {
  public:
    virtual ~RegistryVisitor() = default;
    virtual Status OnKey(const std::string& path) = 0;
    virtual Status OnValue(const std::string& name, const RegistryValue& value) = 0;
};

class RegistryStore {
  public:
    virtual ~RegistryStore() = default;

    // Once, before anything else. If there is no store yet, or an empty file, it is made and
    // holds `first_values` from its first moment on. On failure nothing is overwritten, and the
    // error's subject is the store's file.
    virtual Status OpenStore(std::span<const RegistryWrite> first_values) = 0;

    virtual Result<std::unique_ptr<RegistryKey>> OpenKey(std::string_view path) = 0;
    // Opens the key, after making it if it isn't there.
    virtual Result<std::unique_ptr<RegistryKey>> CreateKey(std::string_view path) = 0;
    virtual Result<std::unique_ptr<RegistryTransaction>> Begin() = 0;
    // Shows the state of one moment, whatever is written meanwhile. The first path shown is in
    // the stored spelling.
    virtual Status Visit(std::string_view path, RegistryVisitor& visitor) = 0;
};

RegistryStore& Registry();

// A store in the SQLite database `file`, whose folder is made if need be.
std::unique_ptr<RegistryStore> MakeSqliteRegistry(std::string file);

// All in one transaction.
Status WriteValues(RegistryStore& store, std::span<const RegistryWrite> writes);

// The text of a string value, up to its first NUL. Nothing if the value is missing, of another
// type, or longer than `buffer` bytes with its final NUL.
std::optional<std::string> ReadText(RegistryKey& key, std::string_view name, std::size_t buffer);

// Bytes of that buffer for names of files and other short texts.
inline constexpr std::size_t kTextBuffer = 260;

// Whether `path` begins with one of the five roots that a registry has, in any case of letters.
bool HasKnownRoot(std::string_view path);

inline constexpr std::string_view kCurrentUser = "HKEY_CURRENT_USER\\";

}  // namespace velto::platform
