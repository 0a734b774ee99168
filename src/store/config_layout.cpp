#include <array>
#include <string_view>

#include "store/config_record.h"

namespace velto {
namespace {

constexpr std::string_view kRule = ";# ----------------------------------------------------------";
constexpr std::string_view kComment = ";#";

constexpr std::array<std::string_view, 6> kOpening = {
    "REGEDIT4",
    ";# Velto configuration file",
    ";# Lines beginning with ';#' are comments",
    ";# Lines beginning with '; ' are Velto's options",
    ";# Lines without any symbols are plugin registry entries",
    kComment,
};

// A run of keys, in the order of the key table, under a title.
struct Section {
    std::string_view title;
    std::string_view second_title;  // may be empty
    Key first;
    Key last;
};

constexpr Section kInternals = {";# Important Velto Internals", "", Key::fileVersion,
                                Key::fileGroup};

constexpr std::array<Section, 8> kSections = {{
    {";# Graphics Section", "", Key::gpuFileName, Key::gpuFileName},
    {";# Sound Section", "", Key::enableSound, Key::spuFileName},
    {";# CD/ISO Section", "", Key::cdrFileName, Key::storeSubChannelLG},
    {";# Netplay Section", "", Key::netFileName, Key::netFileName},
    {";# Memory Card Section", "", Key::memcard1, Key::memcard2},
    {";# Gamepad Section", "", Key::keys1, Key::multiTap},
    {";# Misc Section", "", Key::bios, Key::psxIdExt},
    {";# Obsolete Section", ";# Entriees here retained for backwards compatibility", Key::psxid,
     Key::psxid},
}};

std::string FlagText(bool on) {
    return on ? "true" : "false";
}

struct Field {
    Key key;
    std::string (*text)(const ConfigRecord&);
};

// clang-format off
constexpr Field kFields[] = {
    // This line alone keeps a blank behind its value.
    {Key::fileVersion, [](const ConfigRecord&) { return std::string(kFileVersion) + " "; }},
    {Key::fileGroup, [](const ConfigRecord& r) { return r.fileGroup; }},
    {Key::magicCFG, [](const ConfigRecord&) { return FlagText(true); }},
    {Key::gpuFileName, [](const ConfigRecord& r) { return r.gpuFileName; }},
    {Key::enableSound, [](const ConfigRecord& r) { return FlagText(r.enableSound); }},
    {Key::enableCDDA, [](const ConfigRecord& r) { return FlagText(r.enableCDDA); }},
    {Key::enableXA, [](const ConfigRecord& r) { return FlagText(r.enableXA); }},
    {Key::enableSpuIRQ, [](const ConfigRecord& r) { return FlagText(r.enableSpuIRQ); }},
    {Key::spuFileName, [](const ConfigRecord& r) { return r.spuFileName; }},
    {Key::cdrFileName, [](const ConfigRecord& r) { return r.cdrFileName; }},
    {Key::imageFileName, [](const ConfigRecord& r) { return r.imageFileName; }},
    {Key::driveLetter, [](const ConfigRecord& r) { return std::string(1, r.driveLetter); }},
    {Key::region, [](const ConfigRecord& r) { return r.region; }},
    {Key::enablePPF, [](const ConfigRecord& r) { return FlagText(r.enablePPF); }},
    {Key::readSubChannel, [](const ConfigRecord& r) { return FlagText(r.readSubChannel); }},
    {Key::storeSubChannel, [](const ConfigRecord& r) { return FlagText(r.storeSubChannel); }},
    {Key::storeSubChannelLG, [](const ConfigRecord& r) { return FlagText(r.storeSubChannelLG); }},
    {Key::netFileName, [](const ConfigRecord& r) { return r.netFileName; }},
    {Key::memcard1, [](const ConfigRecord& r) { return r.memcard1; }},
    {Key::memcard2, [](const ConfigRecord& r) { return r.memcard2; }},
    {Key::keys1, [](const ConfigRecord& r) { return r.pads.At(1).GetKeyString(); }},
    {Key::keys2, [](const ConfigRecord& r) { return r.pads.At(2).GetKeyString(); }},
    {Key::keys3, [](const ConfigRecord& r) { return r.pads.At(3).GetKeyString(); }},
    {Key::keys4, [](const ConfigRecord& r) { return r.pads.At(4).GetKeyString(); }},
    {Key::padAxis, [](const ConfigRecord& r) { return r.pads.GetAxisString(); }},
    {Key::padType, [](const ConfigRecord& r) { return r.pads.GetTypeString(); }},
    {Key::motorType, [](const ConfigRecord& r) { return r.pads.GetMotorString(); }},
    {Key::bMotorType, [](const ConfigRecord& r) { return r.pads.GetBMotorString(); }},
    {Key::sMotorType, [](const ConfigRecord& r) { return r.pads.GetSMotorString(); }},
    {Key::multiTap, [](const ConfigRecord& r) { return FlagText(r.multiTap); }},
    {Key::bios, [](const ConfigRecord& r) { return r.bios; }},
    {Key::commandLine, [](const ConfigRecord& r) { return r.commandLine; }},
    {Key::autoplay, [](const ConfigRecord& r) { return FlagText(r.autoplay); }},
};
// clang-format on

// An obsolete key is written unset.
std::string TextOf(const ConfigRecord& record, Key key) {
    for (const auto& field : kFields) {
        if (field.key == key) return field.text(record);
    }
    return std::string(kUnset);
}

void WriteLines(CConfigFile& file, std::initializer_list<std::string_view> lines) {
    for (const auto line : lines) file.WriteLine(line);
}

void WriteHead(CConfigFile& file, const Section& section) {
    WriteLines(file, {kRule, section.title});
    if (!section.second_title.empty()) file.WriteLine(section.second_title);
    WriteLines(file, {kRule, kComment});
}

void WriteSection(CConfigFile& file, const Section& section, const ConfigRecord& record) {
    WriteHead(file, section);
    for (const auto& row : KeyTable()) {
        if (row.key < section.first || row.key > section.last) continue;
        if (row.kind == ValueKind::List) {
            file.WriteList(row.name, record.psxIdExt);
        } else {
            file.WriteEntry(row.name, TextOf(record, row.key));
        }
    }
    file.WriteLine(kComment);
}

}  // namespace

CConfigFile WriteRecord(const ConfigRecord& record, std::string_view plugin_lines, bool magic) {
    CConfigFile file;
    for (const auto line : kOpening) file.WriteLine(line);
    WriteSection(file, kInternals, record);
    if (magic) file.WriteEntry(RowOf(Key::magicCFG).name, TextOf(record, Key::magicCFG));
    for (const auto& section : kSections) WriteSection(file, section, record);
    WriteLines(file, {kRule, ";# Plugin Section", kRule, kComment});
    file.WriteText(plugin_lines);
    WriteLines(file, {kComment, kRule, ";# End of configuration File", kRule});
    return file;
}

}  // namespace velto
