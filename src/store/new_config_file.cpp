#include "store/new_config_file.h"

#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/registry.h"
#include "store/option_table.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

constexpr std::string_view kRule = ";# ----------------------------------------------------------";
constexpr std::string_view kBanner =
    ";#///////////////////////////////////////////////////////////";
constexpr std::string_view kComment = ";#";

// A run of keys, in the order of the key table, under a title of one or two lines.
struct Section {
    std::string_view title;
    Key first;
    Key last;
};

constexpr Section kSections[] = {
    {";# Important Velto Internals", Key::fileVersion, Key::fileGroup},
    {";# Graphics Section", Key::gpuFileName, Key::gpuFileName},
    {";# Sound Section", Key::enableSound, Key::spuFileName},
    {";# CD/ISO Section", Key::cdrFileName, Key::storeSubChannelLG},
    {";# NetPlay Section", Key::netFileName, Key::netFileName},
    {";# Memory Card Section", Key::memcard1, Key::memcard2},
    {";# Gamepad Section", Key::keys1, Key::multiTap},
    {";# Misc Section", Key::bios, Key::psxIdExt},
    {";# Obsolete Section\n;# Entries in here are retained for backwards compatibility", Key::psxid,
     Key::psxid},
};

void WriteLines(CConfigFile& file, std::initializer_list<std::string_view> lines) {
    for (const auto line : lines) file.WriteLine(line);
}

// The text of a value as the emulator left it; empty if it can't be had.
std::string EmulatorText(std::string_view value_name) {
    const auto key = platform::Registry().OpenKey(
        std::string(platform::kCurrentUser).append(kEmulatorConfigKey));
    if (!key.ok()) return {};
    return platform::ReadText(*key.value(), value_name, platform::kTextBuffer).value_or("");
}

std::string TextOf(const KeyRow& row, const std::string& group) {
    if (row.key == Key::fileGroup) return group;
    if (row.emulatorValue.empty()) return std::string(row.newFile.value_or(""));
    auto text = EmulatorText(row.emulatorValue);
    if (row.kind == ValueKind::Text) return text;
    return text == "1" ? "true" : "false";
}

void WriteSection(CConfigFile& file, const Section& section, const std::string& group) {
    WriteLines(file, {kRule, section.title, kRule, kComment});
    for (const auto& row : KeyTable()) {
        if (row.key < section.first || row.key > section.last) continue;
        // Every value of a new file has a blank behind it.
        file.WriteEntry(row.name, TextOf(row, group) + ' ');
    }
    file.WriteLine(kComment);
}

}  // namespace

CConfigFile NewConfigFile(const std::string& group) {
    CConfigFile file;
    WriteLines(file, {"REGEDIT4", ";# Velto configuration file",
                      ";# Lines beginning with ';#' are comments",
                      ";# Lines beginning with ';' are Velto's options",
                      ";# Lines beginning with ';#//' are plugin comments",
                      ";# Lines without any symbols are plugin registry entries", kComment});
    for (const auto& section : kSections) WriteSection(file, section, group);
    WriteLines(file, {kRule, ";# Plugin Section", kRule, kComment});
    WriteLines(file, {kBanner, ";#//GPU plugins", kBanner, kComment});
    WriteLines(file, {kBanner, ";#//CDR plugins", kBanner, kComment});
    WriteLines(file, {kBanner, ";#//SPU plugins", kBanner});
    WriteLines(file, {kRule, ";# End of configuration File", kRule});
    return file;
}

}  // namespace velto
