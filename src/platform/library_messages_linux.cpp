#include "platform/library_messages_linux.h"

#include <sys/socket.h>

#include <algorithm>

#include "platform/retrying.h"

namespace velto::platform {
namespace {

constexpr std::size_t kCountBytes = 1;
constexpr std::size_t kNumberBytes = 8;
constexpr std::size_t kLengthBytes = 2;

void Put(std::string& bytes, std::uint64_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
}

// Takes a message apart from its start on. Behind a failure all further steps fail.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    bool good() const { return good_; }
    bool atEnd() const { return rest_.empty(); }

    std::string_view Bytes(std::size_t size) {
        good_ = good_ && size <= rest_.size();
        if (!good_) return {};
        const auto taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }
    std::uint64_t Number(std::size_t size, std::uint64_t most) {
        std::uint64_t number = 0;
        const auto bytes = Bytes(size);
        for (std::size_t i = bytes.size(); i-- > 0;) {
            number = number << 8U | static_cast<unsigned char>(bytes[i]);
        }
        good_ = good_ && number <= most;
        return good_ ? number : 0;
    }

  private:
    std::string_view rest_;
    bool good_ = true;
};

}  // namespace

std::optional<std::string> EncodeLibraryMessage(const LibraryMessage& message) {
    const auto& [kind, numbers, texts] = message;
    const bool fits = numbers.size() <= kMostNumbers && texts.size() <= kMostFunctions &&
                      std::all_of(texts.begin(), texts.end(), [](const std::string& text) {
                          return text.size() <= kLongestLibraryText;
                      });
    if (!fits) return {};
    std::string bytes(1, static_cast<char>(kind));
    Put(bytes, numbers.size(), kCountBytes);
    for (const auto number : numbers) Put(bytes, number, kNumberBytes);
    Put(bytes, texts.size(), kCountBytes);
    for (const auto& text : texts) {
        Put(bytes, text.size(), kLengthBytes);
        bytes += text;
    }
    return bytes;
}

std::optional<LibraryMessage> DecodeLibraryMessage(std::string_view bytes) {
    Reader reader(bytes);
    const auto kind = reader.Number(1, static_cast<std::uint64_t>(LibraryMessageKind::Failed));
    if (kind < static_cast<std::uint64_t>(LibraryMessageKind::Load)) return {};
    LibraryMessage message{static_cast<LibraryMessageKind>(kind)};
    for (auto left = reader.Number(kCountBytes, kMostNumbers); left > 0; --left) {
        message.numbers.push_back(reader.Number(kNumberBytes, UINT64_MAX));
    }
    for (auto left = reader.Number(kCountBytes, kMostFunctions); left > 0; --left) {
        message.texts.emplace_back(reader.Bytes(reader.Number(kLengthBytes, kLongestLibraryText)));
    }
    if (!reader.good() || !reader.atEnd()) return {};
    return message;
}

bool SendLibraryMessage(int socket, const LibraryMessage& message) {
    const auto bytes = EncodeLibraryMessage(message);
    if (!bytes) return false;
    // Not a signal but an error if the other end is gone. One that takes nothing has stopped
    // reading: requests and answers alternate.
    const auto sent = Retrying(
        [&] { return send(socket, bytes->data(), bytes->size(), MSG_NOSIGNAL | MSG_DONTWAIT); });
    return sent == std::ssize(*bytes);
}

std::optional<LibraryMessage> ReceiveLibraryMessage(int socket) {
    std::string bytes(kLongestLibraryMessage, '\0');
    // Gives the packet's own length, also if it is longer than the place for it.
    const auto size = Retrying([&] { return recv(socket, bytes.data(), bytes.size(), MSG_TRUNC); });
    if (size <= 0 || size > std::ssize(bytes)) return {};
    return DecodeLibraryMessage(std::string_view{bytes}.substr(0, static_cast<std::size_t>(size)));
}

}  // namespace velto::platform
