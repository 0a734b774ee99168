// The options of a configuration file: one row a key, in the order in which a file is written,
// and the version ladder, which tells the keys that files of earlier versions don't have.
// Load, save, new file and direct run all go by this table.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace velto {

// The version that this program writes.
inline constexpr std::string_view kFileVersion = "1.67.160";

// Steps of the ladder, in the order of time. Each brought keys that the one before didn't have.
enum class FileGeneration {
    First,      // 1.5.152, 1.51.152
    Pads,       // 1.56.152 to 1.58.152: pads 1 and 2, several disc ids
    ImageFile,  // 1.59.152 to 1.63.152: the path of a CD image
    Current,    // pads 3 and 4, multitap; also every version text that isn't known
};

FileGeneration GenerationOf(std::string_view fileVersion);

enum class ValueKind {
    Text,
    FlagIfTrue,       // on only for the exact text "true"
    FlagUnlessFalse,  // off only for the exact text "false"
    List,             // items joined by commas
};

// Named as the keys are spelled in a file.
enum class Key {
    fileVersion,
    fileGroup,
    magicCFG,
    gpuFileName,
    enableSound,
    enableCDDA,
    enableXA,
    enableSpuIRQ,
    spuFileName,
    cdrFileName,
    imageFileName,
    driveLetter,
    region,
    enablePPF,
    readSubChannel,
    storeSubChannel,
    storeSubChannelLG,
    netFileName,
    memcard1,
    memcard2,
    keys1,
    keys2,
    keys3,
    keys4,
    padAxis,
    padType,
    motorType,
    bMotorType,
    sMotorType,
    multiTap,
    bios,
    commandLine,
    autoplay,
    psxIdExt,
    psxid,
};

inline constexpr std::size_t kKeyCount = static_cast<std::size_t>(Key::psxid) + 1;

struct KeyRow {
    Key key;
    std::string_view name;
    ValueKind kind;
    FileGeneration since;  // the first files that carry the key

    // What a new file says. Nothing: the key isn't written, the user chooses (`fileGroup`), or
    // the text comes from the emulator's own key, below.
    std::optional<std::string_view> newFile;
    // What a load takes for a missing or empty key. Nothing: the defaults of the pad.
    std::optional<std::string_view> onLoad;
    // The value of `Software\epsxe\config` that a new file takes the text from; else empty. A
    // flag's value there is "1" or not.
    std::string_view emulatorValue;
    // What a direct run takes where the file's version doesn't have the key; empty for keys that
    // every version has.
    std::string_view directAbsent;
    // Whether a direct run refuses a file in which the key is missing or empty.
    bool directNeeds;
};

std::span<const KeyRow, kKeyCount> KeyTable();
const KeyRow& RowOf(Key key);

// Whether files of this generation carry the key.
bool Carries(FileGeneration generation, const KeyRow& row);

// A flag's state from its text, by the row's kind.
bool FlagFromText(const KeyRow& row, std::string_view text);

}  // namespace velto
