#include "store/velto_settings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/stored_path.h"
#include "store/list_text.h"

namespace velto {
namespace {

using platform::DwordValue;
using platform::kTextBuffer;
using platform::ReadText;
using platform::RegistryType;
using platform::RegistryWrite;
using platform::StringValue;

constexpr char kSeparator = ';';

// Bytes with the final NUL. A list that doesn't fit reads as empty.
constexpr std::size_t kListBuffer = 1'000'000;

// A longer list would read as empty, and the next change would lose it: it isn't written.
bool IsReadableList(std::string_view text) {
    return text.size() + 1 <= kListBuffer;
}

std::string CurrentUserKey(std::string_view path) {
    return std::string(platform::kCurrentUser).append(path);
}

// Values of one key, written together.
void Write(std::string_view key,
           std::initializer_list<std::pair<const char*, platform::RegistryValue>> values) {
    std::vector<RegistryWrite> writes;
    for (const auto& [name, value] : values) writes.push_back({CurrentUserKey(key), name, value});
    std::ignore = platform::WriteValues(platform::Registry(), writes);
}

}  // namespace

CVeltoSettings::CVeltoSettings() {
    auto key = platform::Registry().CreateKey(CurrentUserKey(kSettingsKey));
    if (key.ok()) key_ = std::move(key).value();
}

std::string CVeltoSettings::GetEmulatorFolder() const {
    return platform::StoredFolder(GetEmulatorPath());
}

std::string CVeltoSettings::GetBatardFolder() const {
    return platform::StoredFolder(GetBatardPath());
}

std::string CVeltoSettings::GetPluginFolder() const {
    const auto folder = GetEmulatorFolder();
    if (folder.empty()) return {};
    return folder + "plugins" + platform::StoredSeparator(folder);
}

CVeltoSettings::WindowSize CVeltoSettings::GetWindowSize() const {
    return {ReadDword("cx", 0), ReadDword("cy", 0)};
}

void CVeltoSettings::SetWindowSize(std::uint32_t cx, std::uint32_t cy) {
    Write(kSettingsKey, {{"cx", DwordValue(cx)}, {"cy", DwordValue(cy)}});
}

CVeltoSettings::WindowPos CVeltoSettings::GetWindowPos() const {
    return {static_cast<std::int32_t>(ReadDword("x", 0)),
            static_cast<std::int32_t>(ReadDword("y", 0))};
}

void CVeltoSettings::SetWindowPos(std::int32_t x, std::int32_t y) {
    Write(kSettingsKey, {{"x", DwordValue(static_cast<std::uint32_t>(x))},
                         {"y", DwordValue(static_cast<std::uint32_t>(y))}});
}

void CVeltoSettings::AddGroup(const std::string& name, const std::string& parent) {
    if (IsListLost("groups") || IsListLost("parents")) return;
    auto groups = GetGroups();
    auto parents = GetParents();
    groups.push_back(name);
    parents.push_back(parent);
    SetGroups(groups, parents);
}

void CVeltoSettings::RemoveGroup(const std::string& name, const std::string& parent) {
    if (IsListLost("groups") || IsListLost("parents")) return;
    auto groups = GetGroups();
    auto parents = GetParents();
    for (std::size_t i = std::min(groups.size(), parents.size()); i-- > 0;) {
        if (groups[i] != name || parents[i] != parent) continue;
        groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(i));
        parents.erase(parents.begin() + static_cast<std::ptrdiff_t>(i));
    }
    SetGroups(groups, parents);
}

void CVeltoSettings::SetGroups(const std::vector<std::string>& groups,
                               const std::vector<std::string>& parents) {
    const auto groups_text = TerminateList(groups, kSeparator);
    const auto parents_text = TerminateList(parents, kSeparator);
    if (!IsReadableList(groups_text) || !IsReadableList(parents_text)) return;
    Write(kSettingsKey,
          {{"groups", StringValue(groups_text)}, {"parents", StringValue(parents_text)}});
}

bool CVeltoSettings::IsExcluded(std::string_view fileName) const {
    const auto entries = GetExclusionList();
    return std::find(entries.begin(), entries.end(), fileName) != entries.end();
}

bool CVeltoSettings::HasExclusionList() const {
    if (!key_) return false;
    const auto value = key_->Query("excluded");
    // One that can't be read is there: the defaults must not be written over it.
    if (!value.ok()) return value.error().kind != platform::ErrorKind::NotFound;
    return value.value().type == RegistryType::String;
}

void CVeltoSettings::SetExclusionList(const std::vector<std::string>& entries) {
    const auto text = TerminateList(entries, kSeparator);
    if (IsReadableList(text)) WriteString("excluded", text);
}

bool CVeltoSettings::IsLogWindowOn() const {
    const auto key = platform::Registry().OpenKey(CurrentUserKey(kEmulatorConfigKey));
    return !key.ok() || ReadText(*key.value(), "nodebug", kTextBuffer) != "0";
}

// Both names together: it was written under the first alone and is read under the second.
void CVeltoSettings::SetLogWindow(bool on) {
    const auto flag = StringValue(on ? "1" : "0");
    Write(kEmulatorConfigKey, {{"Logswindow", flag}, {"nodebug", flag}});
}

std::string CVeltoSettings::ReadString(std::string_view name) const {
    return key_ ? ReadText(*key_, name, kTextBuffer).value_or("") : "";
}

std::vector<std::string> CVeltoSettings::ReadList(std::string_view name) const {
    if (!key_) return {};
    return SplitList(ReadText(*key_, name, kListBuffer).value_or(""), kSeparator);
}

// Whether a list is there that reads as empty because the read fails: a change would write that
// over it.
bool CVeltoSettings::IsListLost(std::string_view name) const {
    if (!key_) return true;
    const auto value = key_->Query(name);
    if (!value.ok()) return value.error().kind != platform::ErrorKind::NotFound;
    return value.value().data.size() > kListBuffer;
}

std::uint32_t CVeltoSettings::ReadDword(std::string_view name, std::uint32_t missing) const {
    if (!key_) return missing;
    const auto value = key_->Query(name);
    if (!value.ok() || value.value().type != RegistryType::Dword) return missing;
    return platform::DwordIn(value.value().data).value_or(missing);
}

void CVeltoSettings::WriteString(std::string_view name, std::string_view text) {
    if (key_) std::ignore = key_->Set(name, StringValue(text));
}

void CVeltoSettings::WriteDword(std::string_view name, std::uint32_t number) {
    if (key_) std::ignore = key_->Set(name, DwordValue(number));
}

}  // namespace velto
