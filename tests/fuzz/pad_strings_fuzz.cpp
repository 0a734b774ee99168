// Six lists of any bytes, one a line, as the lists of all four pads: every number that is written
// is the one of its token, in plain form, and what is written reads the same again.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "gamepad/input_codes.h"
#include "gamepad/pad_set.h"

namespace {

using Lists = std::array<std::string, 6>;  // in the order of SetPad

void Demand(bool holds, std::string_view what, std::string_view text) {
    if (holds) return;
    std::cerr << what << ": " << text << '\n';
    std::abort();
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

std::string Plain(const std::string& token) {
    const std::string largest = "2147483647";
    if (token.find_first_not_of("0123456789") != std::string::npos) return "0";
    const auto number = token.substr(std::min(token.find_first_not_of('0'), token.size()));
    const bool fits =
        number.size() < largest.size() || (number.size() == largest.size() && number <= largest);
    return number.empty() || !fits ? "0" : number;
}

std::string PlainList(const std::string& list, std::size_t count) {
    auto tokens = Split(list, ',');
    tokens.resize(count);
    std::string plain;
    for (const auto& token : tokens) plain += (plain.empty() ? "" : ",") + Plain(token);
    return plain;
}

velto::CPadSet Load(const Lists& l) {
    velto::CPadSet pads;
    for (int n = 1; n <= 4; ++n) pads.SetPad(n, l[0], l[1], l[2], l[3], l[4], l[5]);
    return pads;
}

Lists Written(const velto::CPadSet& pads, int pad) {
    return {pads.At(pad).GetKeyString(), pads.GetAxisString(),   pads.GetMotorString(),
            pads.GetBMotorString(),      pads.GetSMotorString(), pads.GetTypeString()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto lines = Split(std::string(data, data + size), '\n');
    lines.resize(6);
    Lists lists;
    std::copy(lines.begin(), lines.end(), lists.begin());
    const auto pads = Load(lists);
    const bool defaults =
        std::any_of(lists.begin(), lists.end(), [](auto& l) { return l.empty(); });
    if (defaults) lists = Written(pads, 1);
    for (int pad = 1; pad <= 4; ++pad) {
        const auto written = Written(pads, pad);
        Demand(defaults || written[0] == PlainList(lists[0], 16), "keys", written[0]);
        Demand(written[1] == PlainList(lists[1], 16), "axes", written[1]);
        for (std::size_t list = 2; list < lists.size(); ++list) {
            Demand(written[list] == PlainList(lists[list], 4), "list", written[list]);
        }
        Demand(Load(written).At(pad) == pads.At(pad), "reads differently", written[0]);
        Demand(!velto::InputName(pads.At(pad).left).empty(), "no name", written[0]);
    }
    return 0;
}
