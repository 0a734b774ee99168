#include "portable/misc_settings.h"

#include "platform/files.h"
#include "platform/stored_path.h"

namespace velto {
namespace {

std::string_view Shown(const std::string& field) {
    return field == kUnset ? std::string_view() : field;
}

}  // namespace

std::string_view CMiscSettings::Bios() const {
    return Shown(document_.bios);
}

std::string_view CMiscSettings::CommandLine() const {
    return Shown(document_.commandLine);
}

std::string CMiscSettings::BiosSearchStart() const {
    auto folder = document_.settings.GetEmulatorFolder();
    const auto separator = platform::StoredSeparator(folder);
    if (!folder.empty()) {
        folder.append("bios");
        const auto info = platform::Files().Info(platform::HostPath(folder));
        if (info.ok() && info.value().folder) return folder + separator + "*.bin";
    }
    return std::string(Bios());
}

void CMiscSettings::Change(std::string& field, std::string_view text) {
    if (loading) return;
    field = text.empty() ? kUnset : text;
    document_.dirty = true;
    editor_.EnableApplyAndReset(true);
}

}  // namespace velto
