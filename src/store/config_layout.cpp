#include "store/config_layout.h"

#include <initializer_list>

#include "store/option_table.h"

namespace velto {
namespace {

constexpr std::string_view kRule = ";# ----------------------------------------------------------";
constexpr std::string_view kBannerRule =
    ";#///////////////////////////////////////////////////////////";
constexpr std::string_view kComment = ";#";

// Lines as a saved and as a new file have them.
struct Wording {
    std::string_view saved;
    std::string_view fresh = saved;
};

constexpr Wording kOptionsComment = {
    ";# Lines beginning with '; ' are Velto's options",
    ";# Lines beginning with ';' are Velto's options\n"
    ";# Lines beginning with ';#//' are plugin comments",
};

struct Head {
    FileSection section{};
    Wording title;
};

constexpr Head kHeads[] = {
    {FileSection::Internals, {";# Important Velto Internals"}},
    {FileSection::Graphics, {";# Graphics Section"}},
    {FileSection::Sound, {";# Sound Section"}},
    {FileSection::Cd, {";# CD/ISO Section"}},
    {FileSection::Net, {";# Netplay Section", ";# NetPlay Section"}},
    {FileSection::MemoryCards, {";# Memory Card Section"}},
    {FileSection::Gamepad, {";# Gamepad Section"}},
    {FileSection::Misc, {";# Misc Section"}},
    {FileSection::Obsolete,
     {";# Obsolete Section\n;# Entriees here retained for backwards compatibility",
      ";# Obsolete Section\n;# Entries in here are retained for backwards compatibility"}},
};

std::string_view In(FileForm form, const Wording& wording) {
    return form == FileForm::Saved ? wording.saved : wording.fresh;
}

void WriteLines(CConfigFile& file, std::initializer_list<std::string_view> lines) {
    for (const auto line : lines) file.WriteLine(line);
}

void WriteHead(CConfigFile& file, std::string_view title) {
    WriteLines(file, {kRule, title, kRule, kComment});
}

void WriteOptions(CConfigFile& file, FileSection section, const OptionTexts& texts, FileForm form) {
    for (const auto& row : OptionTable()) {
        if (row.section != section) continue;
        const auto& text = texts[row.key];
        file.WriteEntry(row.name, form == FileForm::New ? text + ' ' : text);
    }
}

}  // namespace

CConfigFile LayOut(const OptionTexts& texts, FileForm form, std::string_view plugin_lines) {
    CConfigFile file;
    WriteLines(file, {"REGEDIT4", ";# Velto configuration file",
                      ";# Lines beginning with ';#' are comments", In(form, kOptionsComment),
                      ";# Lines without any symbols are plugin registry entries", kComment});
    for (const auto& head : kHeads) {
        WriteHead(file, In(form, head.title));
        WriteOptions(file, head.section, texts, form);
        file.WriteLine(kComment);
        // The mark stands between two sections.
        if (head.section == FileSection::Internals && !texts[Key::magicCFG].empty()) {
            WriteOptions(file, FileSection::PortableMark, texts, form);
        }
    }
    WriteHead(file, ";# Plugin Section");
    file.WriteText(plugin_lines);
    if (form == FileForm::Saved) file.WriteLine(kComment);
    WriteLines(file, {kRule, ";# End of configuration File", kRule});
    return file;
}

std::string PluginBanner(std::string_view kind) {
    std::string banner;
    banner.append(kBannerRule).append("\n;#//").append(kind).append(" plugins\n");
    return banner.append(kBannerRule).append("\n");
}

}  // namespace velto
