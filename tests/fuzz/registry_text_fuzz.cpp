// Any bytes as registry text: what is read mustn't depend on the pieces in which the file comes,
// and written out it must read the same again, without a line that is skipped.
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "regedit/text_parser.h"
#include "regedit/text_writer.h"
#include "support/recorded_registry.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using velto::test::Parse;
    const std::string text(data, data + size);
    const auto parsed = Parse(text, 3);
    assert(parsed == Parse(text));

    std::string written;
    velto::regedit::TextWriter writer([&](std::string_view piece) {
        written += piece;
        return velto::platform::Status();
    });
    velto::test::TextReader reader(text);
    const bool known = velto::regedit::ParseRegistryText(reader, writer).ok();
    const bool finished = writer.Finish().ok();
    assert(finished && known == parsed.starts_with("skipped"));
    assert(Parse(written) == "skipped 0" + parsed.substr(parsed.find('\n')));
    return 0;
}
