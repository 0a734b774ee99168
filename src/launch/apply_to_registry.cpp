#include "launch/apply_to_registry.h"

#include <tuple>

#include "platform/ascii.h"

namespace velto {

EmulatorSettings SettingsOf(const ConfigRecord& record) {
    EmulatorSettings settings;
    settings.enablePPF = record.enablePPF;
    settings.bios = record.bios;
    settings.driveLetter = record.driveLetter;
    settings.cdrFileName = record.cdrFileName;
    settings.region = record.region;
    settings.memcard1 = record.memcard1;
    settings.memcard2 = record.memcard2;
    settings.enableCDDA = record.enableCDDA;
    settings.spuFileName = record.spuFileName;
    settings.enableSpuIRQ = record.enableSpuIRQ;
    settings.enableXA = record.enableXA;
    settings.storeSubChannel = record.storeSubChannel;
    settings.storeSubChannelLG = record.storeSubChannelLG;
    settings.readSubChannel = record.readSubChannel;
    settings.gpuFileName = record.gpuFileName;
    settings.netFileName = record.netFileName;
    settings.padAxis = record.pads.GetAxisString();
    settings.bMotorType = record.pads.GetBMotorString();
    settings.motorType = record.pads.GetMotorString();
    settings.sMotorType = record.pads.GetSMotorString();
    settings.padType = record.pads.GetTypeString();
    settings.keys1 = record.pads.At(1).GetKeyString();
    settings.keys2 = record.pads.At(2).GetKeyString();
    settings.keys3 = record.pads.At(3).GetKeyString();
    settings.keys4 = record.pads.At(4).GetKeyString();
    settings.multiTap = record.multiTap;
    settings.imagePlugin = record.cdrIsMooby;
    settings.imageFileName = record.imageFileName;
    return settings;
}

void ApplyToRegistry(ConfigRecord& record) {
    std::ignore = platform::WriteValues(platform::Registry(), EmulatorValues(SettingsOf(record)));
    for (auto* const file :
         {&record.cdrFileName, &record.spuFileName, &record.gpuFileName, &record.netFileName}) {
        *file = platform::Upper(*file);
    }
}

}  // namespace velto
