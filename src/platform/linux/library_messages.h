// The messages between the library service and `velto-plugin`, the program that libraries run in.
// For the two ends alone.
//
// A message is one packet of a pipe in packet mode. Its bytes: the kind (1), the count of its
// numbers (1), the numbers (8 each, little-endian), the count of its texts (1), and each text as
// its length (2, little-endian) and its bytes. Nothing may follow.
//
//     request  numbers                             texts
//     Load     1 if a Call follows at once, or 0   file name
//     Call     handle, FunctionResult of each      names
//     Free     handle
//
// Each request has one answer: Failed with one text that says why, or Done. That of Load has the
// library's handle. That of Call has as numbers the address of each function, 0 for none, and if
// all were found the number of each, and as texts the text of each. A Call behind a Load is taken
// from the pipe when the library is loaded, its handle doesn't count, and both have one answer: the
// numbers and texts of the Load's and the Call's, or the Load's alone if the Call failed.
#pragma once

#include <climits>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/libraries.h"

namespace velto::platform {

enum class LibraryMessageKind : std::uint8_t { Load = 1, Call, Free, Done, Failed };

struct LibraryMessage {
    LibraryMessageKind kind = LibraryMessageKind::Failed;
    std::vector<std::uint64_t> numbers{};  // up to kMostNumbers
    std::vector<std::string> texts{};      // up to kMostFunctions, of up to kLongestLibraryText
    bool operator==(const LibraryMessage&) const = default;
};

inline constexpr std::size_t kMostNumbers = 1 + 2 * kMostFunctions;
inline constexpr std::size_t kLongestLibraryMessage = PIPE_BUF;  // longer ones would be cut up

// The pipe ends among the program's descriptors.
inline constexpr int kLibraryRequests = 3;
inline constexpr int kLibraryAnswers = 4;

// Nothing if the message is over a bound, or the bytes aren't a message.
std::optional<std::string> EncodeLibraryMessage(const LibraryMessage& message);
std::optional<LibraryMessage> DecodeLibraryMessage(std::string_view bytes);

// False if the other end is gone (SIGPIPE is the caller's affair) or the message is over a bound.
bool SendLibraryMessage(int pipe, const LibraryMessage& message);
// Blocks. Nothing if the other end is gone or what came is no message.
std::optional<LibraryMessage> ReceiveLibraryMessage(int pipe);

}  // namespace velto::platform
