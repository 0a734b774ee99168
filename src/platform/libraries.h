// Foreign libraries: loaded, searched and called outside of this process.
//
// Nothing of a library ever runs in here. Each loaded one lives in a program of its own, with the
// library's folder as its current directory, and all that a scan loads share one. What a library
// does there, crash, exit, hang or nonsense, is a failure of the call and ends its program alone;
// whatever that program held is then as good as freed.
//
// Calls may come from any thread, but from one at a time for each library. No program of a library
// outlives the thread that loaded it.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace velto::platform {

// Opaque. A handle is never used twice; an address means something to its library alone.
enum class LibraryHandle : std::uint64_t { None = 0 };
enum class FunctionAddress : std::uint64_t { None = 0 };

// The longest text that a function may give, in bytes, and the most functions of one Call.
inline constexpr std::size_t kLongestLibraryText = 4000;
inline constexpr std::size_t kMostFunctions = 4;

// How long a library may take to be loaded, to answer and to be freed, in a scan and outside: one
// that hangs in its load or its unload would freeze the editor. Only a call outside of a scan is
// without a bound, as it may wait for the user.
inline constexpr std::chrono::milliseconds kLibraryAnswerTime{5000};

// What is taken of what a function gives: nothing, the low 32 bits, or the text up to its NUL.
enum class FunctionResult : std::uint8_t { Nothing, Number, Text };

// A function without parameters, by the exact name under which a library exports it.
struct LibraryFunction {
    std::string name;
    FunctionResult result = FunctionResult::Nothing;
    bool operator==(const LibraryFunction&) const = default;
};

struct FunctionAnswer {
    std::uint32_t number = 0;
    std::string text{};  // any bytes but NUL
};

struct LibraryAnswer {
    // Of each function; None if the library doesn't export it itself.
    std::vector<FunctionAddress> addresses{};
    // Of each function if all were found; else none was called, and this is empty.
    std::vector<FunctionAnswer> results{};
};

// As long as it lives, libraries of its folder are loaded into one program, or a new one after that
// has died. Its destructor ends the program, and with it what is still loaded there.
class LibraryScan {
  public:
    virtual ~LibraryScan() = default;
};

class LibraryService {
  public:
    virtual ~LibraryService() = default;

    // Loads the file of this name in the folder, a host path. Fails after the answer time.
    virtual Result<LibraryHandle> Load(const std::string& folder, const std::string& file) = 0;
    // Finds the functions, and if the library has them all, calls them in their order. Fails as a
    // whole if one gives a null text or one over kLongestLibraryText. Blocks until they have
    // returned; the answer time ends it during a scan alone.
    virtual Result<LibraryAnswer> Call(LibraryHandle library,
                                       std::span<const LibraryFunction> functions) = 0;
    // Success also if the library's program has died, or was ended because it took longer than the
    // answer time. After a failure it is loaded still.
    virtual Status Free(LibraryHandle library) = 0;

    // One scan at a time. Each of its libraries is going to be called with these functions first:
    // that is done along with the load, which takes half the time of doing it on its own, and told
    // by the Call.
    virtual std::unique_ptr<LibraryScan> BeginScan(const std::string& folder,
                                                   std::span<const LibraryFunction> functions) = 0;
};

LibraryService& Libraries();

class ProcessService;

// `program` is the path of Velto itself, beside which the libraries' program stands. `processes`
// must outlive the service, which makes the whole process ignore SIGPIPE.
std::unique_ptr<LibraryService> MakeLibraryService(
    ProcessService& processes, const std::string& program,
    std::chrono::milliseconds answer_time = kLibraryAnswerTime);

}  // namespace velto::platform
