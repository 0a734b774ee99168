#include "store/config_record.h"

#include "platform/ascii.h"
#include "store/config_layout.h"
#include "store/option_table.h"

namespace velto {
namespace {

// The driver that reads disc images, as it calls itself in front of its version.
constexpr std::string_view kImagePluginName = "Mooby2 cd disk image driver ";
constexpr std::string_view kVersionWord = "Version";

// The texts of the keys that the file's version carries, with replacements. Sets `corrupted` if
// the user should know of one.
OptionTexts ReadTexts(const CConfigFile& file, bool& corrupted) {
    const auto generation = GenerationOf(file.ReadEntry(RowOf(Key::fileVersion).name));
    OptionTexts texts;
    for (const auto& row : OptionTable()) {
        if (!Carries(generation, row)) continue;
        auto& text = texts[row.key] = file.ReadEntry(row.name);
        if (!text.empty() || row.ifMissing == IfMissing::Accept) continue;
        text = row.standard;
        corrupted =
            corrupted || row.ifMissing == IfMissing::Warn || generation == FileGeneration::First;
    }
    return texts;
}

}  // namespace

ConfigRecord::ConfigRecord() {
    for (int number = 1; number <= kPadCount; ++number) pads.At(number).SetDefaults();
}

LoadedRecord ReadRecord(const CConfigFile& file, const PluginNames& display_name) {
    LoadedRecord loaded;
    auto& record = loaded.record;
    const auto texts = ReadTexts(file, loaded.corrupted);
    for (const auto& row : OptionTable()) {
        if (row.member.take != nullptr && !texts[row.key].empty()) {
            row.member.take(record, row, texts);
        }
    }

    const auto name = display_name(record.cdrFileName);
    const auto version = name.find(kVersionWord);
    record.cdrIsMooby = version != std::string::npos && name.substr(0, version) == kImagePluginName;
    record.cdrIsInternalIso = !record.cdrIsMooby && platform::Upper(record.cdrFileName) == "ISO";
    return loaded;
}

OptionTexts TextsOf(const ConfigRecord& record) {
    OptionTexts texts;
    for (const auto& row : OptionTable()) {
        const auto text = row.member.text;
        texts[row.key] = text == nullptr ? std::string(row.standard) : text(record);
    }
    return texts;
}

CConfigFile WriteRecord(const ConfigRecord& record, std::string_view plugin_lines, bool magic) {
    auto texts = TextsOf(record);
    // This line alone keeps a blank behind its value.
    texts[Key::fileVersion] = std::string(kFileVersion) + ' ';
    if (magic) texts[Key::magicCFG] = "true";
    return LayOut(texts, FileForm::Saved, plugin_lines);
}

bool IsPortable(const CConfigFile& file) {
    return file.ReadEntry(RowOf(Key::magicCFG).name) == "true";
}

}  // namespace velto
