// Six lists of any bytes, one a line, as the lists of all four pads: what is written are as many
// plain numbers as a list has places, and it reads the same again.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "gamepad/input_codes.h"
#include "gamepad/pad_set.h"

namespace {

// Every pad from lines in the order of SetPad.
velto::CPadSet Load(const std::string& lines) {
    std::istringstream in(lines);
    std::string lists[6];
    for (auto& list : lists) std::getline(in, list);
    velto::CPadSet pads;
    for (int pad = 1; pad <= velto::kPadCount; ++pad) {
        pads.SetPad(pad, lists[0], lists[1], lists[2], lists[3], lists[4], lists[5]);
    }
    return pads;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto pads = Load(std::string(data, data + size));
    for (int pad = 1; pad <= velto::kPadCount; ++pad) {
        const auto written = pads.At(pad).GetKeyString() + '\n' + pads.GetAxisString() + '\n' +
                             pads.GetMotorString() + '\n' + pads.GetBMotorString() + '\n' +
                             pads.GetSMotorString() + '\n' + pads.GetTypeString() + '\n';
        assert(std::count(written.begin(), written.end(), ',') == 15 + 15 + 4 * 3);
        assert(written.find_first_not_of("0123456789,\n") == std::string::npos);
        assert(written.find(",,") == std::string::npos);
        assert(Load(written).At(pad) == pads.At(pad));
        assert(!velto::InputName(pads.At(pad).left).empty());
    }
    return 0;
}
