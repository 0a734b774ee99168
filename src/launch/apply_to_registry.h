// A record's way into the emulator's registry.
#pragma once

#include "launch/emulator_values.h"
#include "store/config_record.h"

namespace velto {

// The record as far as the emulator's values go.
EmulatorSettings SettingsOf(const ConfigRecord& record);

// Writes the emulator's values, and with the image plug-in its image, in one transaction. If they
// can't be written, the emulator has its former ones. The record's names of plug-ins are in upper
// case from then on.
void ApplyToRegistry(ConfigRecord& record);

}  // namespace velto
