#include "platform/registry.h"

#include <algorithm>
#include <array>

#include "platform/ascii.h"

namespace velto::platform {
namespace {

constexpr std::array<std::string_view, 5> kRoots = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER",
                                                    "HKEY_LOCAL_MACHINE", "HKEY_USERS",
                                                    "HKEY_CURRENT_CONFIG"};

}  // namespace

RegistryValue StringValue(std::string_view text) {
    return {RegistryType::String, std::string(text) + '\0'};
}

RegistryValue DwordValue(std::uint32_t number) {
    std::string data;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        data += static_cast<char>(number >> shift & 0xFFU);
    }
    return {RegistryType::Dword, std::move(data)};
}

std::optional<std::uint32_t> DwordIn(std::string_view data) {
    constexpr std::size_t kSize = 4;
    if (data.size() != kSize) return {};
    std::uint32_t number = 0;
    for (std::size_t i = kSize; i-- > 0;) {
        number = number << 8U | static_cast<unsigned char>(data[i]);
    }
    return number;
}

Status WriteValues(RegistryStore& store, std::span<const RegistryWrite> writes) {
    auto transaction = store.Begin();
    if (!transaction.ok()) return transaction.error();
    for (const auto& write : writes) {
        auto written = transaction.value()->SetValue(write.path, write.name, write.value);
        if (!written.ok()) return written;
    }
    return transaction.value()->Commit();
}

std::optional<std::string> ReadText(RegistryKey& key, std::string_view name, std::size_t buffer) {
    auto value = key.Query(name);
    if (!value.ok() || value.value().type != RegistryType::String) return {};
    auto& data = value.value().data;
    if (data.size() > buffer) return {};
    data.resize(std::min(data.find('\0'), data.size()));
    if (data.size() + 1 > buffer) return {};
    return std::move(data);
}

bool HasKnownRoot(std::string_view path) {
    const auto root = path.substr(0, path.find('\\'));
    return std::any_of(kRoots.begin(), kRoots.end(),
                       [&](std::string_view known) { return EqualsIgnoringCase(root, known); });
}

}  // namespace velto::platform
