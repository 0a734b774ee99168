#include "store/registry_dump.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/replace_file.h"
#include "store/config_file.h"
#include "store/config_layout.h"

namespace velto {
namespace {

using platform::RegistryKey;
using platform::RegistryType;

// Bytes with the final NUL, of a name and of a string.
constexpr std::size_t kBuffer = 260;
constexpr std::size_t kDwordDigits = 8;

// Bytes on disk. The rest of a configuration is left to its options and comments: no save could
// take a larger dump.
constexpr std::size_t kLargestDump = kLargestConfigFile - (std::size_t{1} << 20);

struct Branch {
    std::string_view path;
    std::string_view kind;
};
constexpr std::array<Branch, 3> kBranches = {{
    {kGpuBranch, "GPU"},
    {kCdrBranch, "CDR"},
    {kSpuBranch, "SPU"},
}};

void Report(const char* text, const char* caption = "Tavo Screwed up") {
    platform::Report(text, caption);
}

std::unique_ptr<RegistryKey> OpenKey(const std::string& path) {
    auto key = platform::Registry().OpenKey(path);
    return key.ok() ? std::move(key).value() : nullptr;
}

bool CloseKey(RegistryKey* key) {
    return key != nullptr && key->Close().ok();
}

// The bytes as digits of this base, at least `width` of them.
std::string Hex(std::uint32_t number, std::size_t width) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (; number != 0 || digits.size() < width; number >>= 4U) {
        digits.insert(digits.begin(), kDigits[number & 0xFU]);
    }
    return digits;
}

std::string HexBytes(const std::string& data) {
    std::string text;
    for (const char c : data) {
        if (!text.empty()) text += ',';
        text += c == '\0' ? "00" : Hex(static_cast<unsigned char>(c), 1);
    }
    return text;
}

// The data of the value, if it has this type and can be read.
std::optional<std::string> Read(RegistryKey& key, const std::string& name, RegistryType type) {
    auto value = key.Query(name);
    if (!value.ok() || value.value().type != type) return {};
    return std::move(value).value().data;
}

std::string FormatString(RegistryKey& key, const std::string& name) {
    constexpr std::string_view kNotInALine("\0\r\n", 3);
    auto text = Read(key, name, RegistryType::String);
    if (text && text->ends_with('\0')) text->pop_back();
    if (text && text->size() < kBuffer && text->find_first_of(kNotInALine) == std::string::npos) {
        return '"' + name + "\"=\"" + *text + '"';
    }
    Report("error reading string");
    return {};
}

std::string FormatBinary(RegistryKey& key, const std::string& name) {
    if (const auto data = Read(key, name, RegistryType::Binary)) {
        return '"' + name + "\"=hex:" + HexBytes(*data);
    }
    Report("Error reading binary");
    return {};
}

std::string FormatDword(RegistryKey& key, const std::string& name) {
    const auto data = Read(key, name, RegistryType::Dword);
    if (const auto number = data ? platform::DwordIn(*data) : std::nullopt) {
        return '"' + name + "\"=dword:" + Hex(*number, kDwordDigits);
    }
    Report("error reading DWORD");
    return {};
}

std::string FormatByType(RegistryKey& key, const std::string& name, RegistryType type) {
    switch (type) {
        case RegistryType::String:
        case RegistryType::ExpandString:
            return FormatString(key, name);
        case RegistryType::Binary:
            return FormatBinary(key, name);
        case RegistryType::Dword:
            return FormatDword(key, name);
        default:
            Report("Unable to determine data type", "Tavo screwed up");
            return {};
    }
}

std::string DumpText() {
    std::string text = "REGEDIT4 \n";
    for (const auto& [path, kind] : kBranches) {
        if (path != kBranches.front().path) text += ";#\n";
        text += PluginBanner(kind);
        DumpBranch(text, path);
    }
    return text;
}

}  // namespace

void DumpPluginBranches(const std::string& file) {
    constexpr auto kNoStorage = "Failed to open temp storage";
    const auto replacement = platform::FileReplacement::Begin(platform::Files(), file);
    if (!replacement.ok()) {
        Report(kNoStorage);
        return;
    }
    const auto text = platform::ToDiskText(DumpText());
    if (text.size() > kLargestDump) {
        Report("Plugin settings are too large for a configuration");
        return;
    }
    auto written = replacement.value()->Write(text);
    if (written.ok()) written = replacement.value()->Commit();
    if (!written.ok()) Report(kNoStorage);
}

void DumpBranch(std::string& to, std::string_view branch) {
    const auto key = OpenKey(std::string(platform::kCurrentUser).append(branch));
    if (!key) return;
    for (std::size_t index = 0;; ++index) {
        const auto name = key->EnumerateSubkey(index);
        if (!name.ok() || (name.value() && name.value()->size() >= kBuffer)) {
            Report("error obtaining subkey names");
            break;
        }
        if (!name.value()) break;
        const auto subkey = std::string(branch) + *name.value();
        to.append("\n[").append(platform::kCurrentUser).append(subkey).append("]\n");
        DumpSubkey(to, subkey);
    }
    if (!CloseKey(key.get())) Report("error closing parent key");
}

void DumpSubkey(std::string& to, const std::string& subkey) {
    const auto key = OpenKey(std::string(platform::kCurrentUser) + subkey);
    // Reported, and gone on: a key that isn't open can't be enumerated or closed either.
    if (!key) Report("Error Opening subKey");
    for (std::size_t index = 0;; ++index) {
        const auto value = key ? key->EnumerateValue(index)
                               : platform::Result<std::optional<platform::RegistryValueName>>(
                                     platform::Error{platform::ErrorKind::NotFound, subkey, ""});
        if (!value.ok() || (value.value() && value.value()->name.size() >= kBuffer)) {
            Report("Error reading value names and types");
            break;
        }
        if (!value.value()) break;
        const auto& [name, type] = *value.value();
        to.append(FormatValue(platform::kCurrentUser, subkey, name, type)).append("\n");
    }
    if (!CloseKey(key.get())) Report("Error Closing subkey");
}

std::string FormatValue(std::string_view root, const std::string& subkey, const std::string& name,
                        RegistryType type) {
    const auto key = OpenKey(std::string(root) + subkey);
    if (!key) {
        Report("Branch not opened");
        return {};
    }
    auto line = FormatByType(*key, name, type);
    if (!CloseKey(key.get())) {
        Report("Branch not closed");
        return {};
    }
    return line;
}

}  // namespace velto
