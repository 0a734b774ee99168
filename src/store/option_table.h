// The table of options: all that is to be known of each key of a configuration file. Load, save,
// new file, direct run and the way into the emulator's registry walk it; none of them knows an
// option by itself.
//
// An option is a text. Its row tells where it stands in a file and since when, what stands for it
// where it is missing, which member of the record holds it, and what the emulator makes of it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "store/config_record.h"
#include "store/option_texts.h"

namespace velto {

// The version that this program writes.
inline constexpr std::string_view kFileVersion = "1.67.160";

// Steps of the version ladder, in the order of time. Each brought keys that the one before didn't
// have.
enum class FileGeneration {
    First,      // 1.5.152, 1.51.152
    Pads,       // 1.56.152 to 1.58.152: pads 1 and 2, several disc ids
    ImageFile,  // 1.59.152 to 1.63.152: the path of a CD image
    Current,    // pads 3 and 4, multitap; also every version text that isn't known
};

FileGeneration GenerationOf(std::string_view fileVersion);

// In the order of a file. The mark of a portable one has no head.
enum class FileSection {
    Internals,
    PortableMark,
    Graphics,
    Sound,
    Cd,
    Net,
    MemoryCards,
    Gamepad,
    Misc,
    Obsolete,
};

// What a load does about a key that the file should have and hasn't.
enum class IfMissing {
    Warn,  // takes the standard text, and says so
    // Takes the standard text, and says so only in files of the first generation: new
    // configurations rely on it, where the emulator has no gamepad values.
    Quiet,
    Accept,  // leaves the option without a text
};

struct OptionRow;

// The option's place in the record.
struct OptionMember {
    // As a file says it. None: always the standard text.
    std::string (*text)(const ConfigRecord& record) = nullptr;
    // Sets it. `texts` are the file's: some members take several. None: another option's does it.
    void (*take)(ConfigRecord& record, const OptionRow& row, const OptionTexts& texts) = nullptr;
};

// A value of the emulator's own registry key.
struct EmulatorValue {
    std::string_view name;
    std::string (*text)(const OptionRow& row, const std::string& option) = nullptr;
};

inline constexpr std::size_t kMostValues = 2;  // of one option

struct OptionRow {
    Key key;
    std::string_view name;
    OptionMember member{};
    FileSection section;
    FileGeneration since = FileGeneration::First;  // the first files that carry the key
    // What a new file says, and what stands for a missing or empty text.
    std::string_view standard;
    EmulatorValue values[kMostValues]{};  // those behind the last one have no name
    // What a new file says if not the standard text, from the first of `values` as the emulator
    // has it.
    std::string (*fromEmulator)(const std::string& value) = nullptr;
    IfMissing ifMissing = IfMissing::Warn;
    // Whether a direct run refuses a file that should have the key and doesn't; else it takes no
    // notice of the option.
    bool directNeeds = true;
    // What a direct run takes for a key that the file's version doesn't have, if not the standard
    // text.
    std::string_view directBefore{};
};

std::span<const OptionRow, kKeyCount> OptionTable();
const OptionRow& RowOf(Key key);

// The names of all values that the table gives the emulator, in the order in which they are
// written.
std::span<const std::string_view> EmulatorValueNames();

// Whether files of this generation carry the key.
bool Carries(FileGeneration generation, const OptionRow& row);

// The state of a flag: the standard one, unless the text is exactly the other.
bool IsOn(const OptionRow& row, std::string_view text);

}  // namespace velto
