#include "platform/linux/library_messages.h"

#include <unistd.h>

#include <array>

#include "platform/linux/system_error.h"

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
    if (numbers.size() > kMostNumbers || texts.size() > kMostFunctions) return {};
    std::string bytes(1, static_cast<char>(kind));
    Put(bytes, numbers.size(), kCountBytes);
    for (const auto number : numbers) Put(bytes, number, kNumberBytes);
    Put(bytes, texts.size(), kCountBytes);
    for (const auto& text : texts) {
        if (text.size() > kLongestLibraryText) return {};
        Put(bytes, text.size(), kLengthBytes);
        bytes += text;
    }
    if (bytes.size() > kLongestLibraryMessage) return {};
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

bool SendLibraryMessage(int pipe, const LibraryMessage& message) {
    const auto bytes = EncodeLibraryMessage(message);
    if (!bytes) return false;
    return Retrying([&] { return write(pipe, bytes->data(), bytes->size()); }) ==
           std::ssize(*bytes);
}

std::optional<LibraryMessage> ReceiveLibraryMessage(int pipe) {
    std::array<char, kLongestLibraryMessage> bytes{};
    const auto size = Retrying([&] { return read(pipe, bytes.data(), bytes.size()); });
    if (size <= 0) return {};
    return DecodeLibraryMessage({bytes.data(), static_cast<std::size_t>(size)});
}

}  // namespace velto::platform
