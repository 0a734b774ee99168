#include "platform/ascii.h"
#include "store/config_record.h"

namespace velto {
namespace {

// The driver that reads disc images, as it calls itself in front of its version.
constexpr std::string_view kImagePluginName = "Mooby2 cd disk image driver ";
constexpr std::string_view kVersionWord = "Version";

class RecordReader {
  public:
    RecordReader(const CConfigFile& file, ConfigRecord& record) : file_(file), record_(record) {}

    // In the order of the steps below; what a later one finds can forget what an earlier one did.
    bool Read() {
        record_.fileVersion = Text(Key::fileVersion);
        record_.fileGroup = Text(Key::fileGroup);
        generation_ = GenerationOf(record_.fileVersion);
        ReadLaterPads();
        if (Has(Key::imageFileName)) record_.imageFileName = Text(Key::imageFileName);
        ReadFirstPadsAndIds();
        ReadRest();
        return corrupted_;
    }

  private:
    bool Has(Key key) const { return Carries(generation_, RowOf(key)); }

    std::string Text(Key key) {
        const auto& row = RowOf(key);
        auto text = file_.ReadEntry(row.name);
        if (!text.empty()) return text;
        corrupted_ = true;
        return std::string(row.onLoad.value_or(""));
    }

    bool Flag(Key key) { return FlagFromText(RowOf(key), Text(key)); }

    // A pad whose keys are missing has its default ones.
    std::string KeysOf(int pad, Key key) {
        auto keys = Text(key);
        if (!keys.empty()) return keys;
        CPad defaults;
        defaults.SetNumber(pad);
        defaults.SetDefaults();
        return defaults.GetKeyString();
    }

    void ReadPads(int first, Key first_keys, Key second_keys) {
        const auto keys = KeysOf(first, first_keys);
        const auto next_keys = KeysOf(first + 1, second_keys);
        const auto axis = Text(Key::padAxis);
        const auto motor = Text(Key::motorType);
        const auto big = Text(Key::bMotorType);
        const auto small = Text(Key::sMotorType);
        const auto type = Text(Key::padType);
        record_.pads.SetPad(first, keys, axis, motor, big, small, type);
        record_.pads.SetPad(first + 1, next_keys, axis, motor, big, small, type);
    }

    void ReadLaterPads() {
        if (!Has(Key::keys3)) return;
        ReadPads(3, Key::keys3, Key::keys4);
        record_.multiTap = Flag(Key::multiTap);
    }

    void ReadFirstPadsAndIds() {
        if (!Has(Key::keys1)) {
            const auto id = platform::Upper(file_.ReadEntry(RowOf(Key::psxid).name));
            if (!id.empty()) record_.psxIdExt.push_back(id);
            return;
        }
        ReadPads(1, Key::keys1, Key::keys2);
        // Assigned: a file that has its ids is not reported for what was repaired so far. New
        // configurations without gamepad values rely on it.
        corrupted_ = file_.ReadList(RowOf(Key::psxIdExt).name, record_.psxIdExt);
    }

    void ReadRest() {
        record_.gpuFileName = Text(Key::gpuFileName);
        record_.enableSound = Flag(Key::enableSound);
        record_.enableCDDA = Flag(Key::enableCDDA);
        record_.enableXA = Flag(Key::enableXA);
        record_.enableSpuIRQ = Flag(Key::enableSpuIRQ);
        record_.spuFileName = Text(Key::spuFileName);
        record_.cdrFileName = Text(Key::cdrFileName);
        record_.driveLetter = Text(Key::driveLetter).front();
        record_.region = Text(Key::region);
        record_.enablePPF = Flag(Key::enablePPF);
        record_.readSubChannel = Flag(Key::readSubChannel);
        record_.storeSubChannel = Flag(Key::storeSubChannel);
        record_.storeSubChannelLG = Flag(Key::storeSubChannelLG);
        record_.netFileName = Text(Key::netFileName);
        record_.memcard1 = Text(Key::memcard1);
        record_.memcard2 = Text(Key::memcard2);
        record_.bios = Text(Key::bios);
        record_.commandLine = Text(Key::commandLine);
        record_.autoplay = Flag(Key::autoplay);
    }

    const CConfigFile& file_;
    ConfigRecord& record_;
    FileGeneration generation_ = FileGeneration::Current;
    bool corrupted_ = false;
};

}  // namespace

ConfigRecord::ConfigRecord() {
    for (int number = 1; number <= 4; ++number) pads.At(number).SetDefaults();
}

LoadedRecord ReadRecord(const CConfigFile& file, const PluginNames& display_name) {
    LoadedRecord loaded;
    auto& record = loaded.record;
    loaded.corrupted = RecordReader(file, record).Read();

    const auto name = display_name(record.cdrFileName);
    const auto version = name.find(kVersionWord);
    record.cdrIsMooby = version != std::string::npos && name.substr(0, version) == kImagePluginName;
    record.cdrIsInternalIso = !record.cdrIsMooby && platform::Upper(record.cdrFileName) == "ISO";
    return loaded;
}

}  // namespace velto
