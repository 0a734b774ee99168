// A configuration file of any bytes: every read ends, gives no line of its own, and what is
// written back under a key is what a read of that key gave. A record that was loaded from it is
// saved in bytes that a load and a save don't change.
#include <algorithm>
#include <cassert>
#include <cstdint>
#include <string>

#include "launch/direct_run.h"
#include "platform/line_ends.h"
#include "store/config_record.h"
#include "store/option_table.h"
#include "store/velto_doc.h"

namespace {

// The file as a save gives it to a load.
velto::CConfigFile Saved(const velto::CConfigFile& file) {
    const auto record =
        velto::ReadRecord(file, [](const std::string& plugin) { return plugin; }).record;
    const auto saved = velto::WriteRecord(record, velto::CopyPluginLines(file.text()), false);
    return velto::CConfigFile(
        velto::platform::FromDiskText(velto::platform::ToDiskText(saved.text())));
}

// Whether the value comes back from a line of its own.
bool IsPlain(const std::string& value) {
    return value.find("; ") == std::string::npos &&
           std::none_of(value.begin(), value.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const velto::CConfigFile file(velto::platform::FromDiskText(bytes));
    bool plain = file.ReadEntry("psxid").find(',') == std::string::npos;
    for (const auto& row : velto::OptionTable()) {
        const auto value = file.ReadEntry(row.name);
        assert(value.find_first_of("=\n") == std::string::npos);
        velto::CConfigFile copy;
        copy.WriteEntry(row.name, value);
        plain = plain && IsPlain(value);
        assert(!IsPlain(value) || copy.ReadEntry(row.name) == value);
    }
    const auto saved = Saved(file);
    const auto again = Saved(saved);
    assert(velto::CopyPluginLines(saved.text()) == velto::CopyPluginLines(file.text()));
    assert(!plain || again.text() == saved.text());

    const auto config = velto::ReadDirectConfig(file);
    assert(!config || config->values.size() >= velto::EmulatorValueNames().size());
    return 0;
}
