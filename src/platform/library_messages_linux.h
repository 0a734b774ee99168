// The messages between the library service and `velto-plugin`, the program that libraries run in.
// For the two ends alone.
//
// A message is one packet of a local socket. Its bytes: the kind (1), the count of its numbers (1),
// the numbers (8 each, little-endian), the count of its texts (1), and each text as its length (2,
// little-endian) and its bytes. Nothing may follow. Each request has one answer, Done or Failed.
//
//     request  numbers                            texts      numbers and texts of Done
//     Load     -                                  file name  the library's handle
//     Find     handle                             names      the address of each, 0 for none
//     Call     address and FunctionResult of each            a number and a text of each
//     Free     handle                             -          -
//
// Failed has one text, which says why.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/libraries.h"

namespace velto::platform {

enum class LibraryMessageKind : std::uint8_t { Load = 1, Find, Call, Free, Done, Failed };

struct LibraryMessage {
    LibraryMessageKind kind = LibraryMessageKind::Failed;
    std::vector<std::uint64_t> numbers{};  // up to kMostNumbers
    std::vector<std::string> texts{};      // up to kMostFunctions, of up to kLongestLibraryText
    bool operator==(const LibraryMessage&) const = default;
};

inline constexpr std::size_t kMostNumbers = 2 * kMostFunctions;
inline constexpr std::size_t kLongestLibraryMessage =
    3 + 8 * kMostNumbers + (2 + kLongestLibraryText) * kMostFunctions;

// The descriptor of the socket in the program.
inline constexpr int kLibraryChannel = 3;

// Nothing if the message is over a bound, or the bytes aren't a message.
std::optional<std::string> EncodeLibraryMessage(const LibraryMessage& message);
std::optional<LibraryMessage> DecodeLibraryMessage(std::string_view bytes);

// False if the other end is gone, doesn't take it, or the message is over a bound. Never blocks.
bool SendLibraryMessage(int socket, const LibraryMessage& message);
// Blocks. Nothing if the other end is gone or what came is no message.
std::optional<LibraryMessage> ReceiveLibraryMessage(int socket);

}  // namespace velto::platform
