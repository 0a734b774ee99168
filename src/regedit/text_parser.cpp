#include "regedit/text_parser.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "regedit/text_blanks.h"
#include "regedit/text_lines.h"
#include "regedit/utf16.h"
#include "regedit/value_text.h"

namespace velto::regedit {
namespace {

using platform::RegistryType;
using platform::Result;
using platform::Status;

struct Version {
    std::string_view first_line;
    bool has_utf16_data;  // in UTF-16 text
};
constexpr std::array<Version, 2> kVersions = {{
    {"REGEDIT4", false},
    {"Windows Registry Editor Version 5.00", true},
}};

// The types whose data are text.
constexpr std::array kTextTypes = {RegistryType::String, RegistryType::ExpandString,
                                   RegistryType::MultiString};

constexpr std::string_view kPlainMark = ";#//";

bool IsName(std::string_view name, std::size_t longest) {
    constexpr std::string_view kNotInNames("\0\r\n", 3);
    return name.size() <= longest && name.find_first_of(kNotInNames) == std::string_view::npos;
}

bool IsKeyPath(std::string_view path) {
    std::size_t depth = 0;
    for (std::size_t begin = 0; begin <= path.size(); ++depth) {
        const auto end = std::min(path.find('\\', begin), path.size());
        const auto name = path.substr(begin, end - begin);
        if (name.empty() || !IsName(name, platform::kLongestKeyName)) return false;
        begin = end + 1;
    }
    return depth <= platform::kDeepestKey && platform::HasKnownRoot(path);
}

class Parser {
  public:
    Parser(const Version& version, bool is_utf16, platform::RegistryVisitor& visitor)
        : decodes_data_(version.has_utf16_data && is_utf16), visitor_(visitor) {}

    Status OnLine(const TextLine& line) {
        const auto text = TrimBlanks(line.text);
        const char first = text.empty() ? '\0' : text.front();
        if (first == kComment) return OnComment(text, line.too_long);
        if (first == '[') return OnKey(text, line.too_long);
        if (section_ == Section::PassedOver) return {};
        const bool begins_value = first == '"' || first == '@';
        if (begins_value) EndList();
        if (line.too_long) return OnTooLong();
        if (begins_value) return OnValue(text);
        if (list_) return OnMoreBytes(text);
        if (!text.empty()) ++skipped_;
        return {};
    }

    // The number of lines skipped.
    std::uint64_t Finish() {
        EndList();
        return skipped_;
    }

  private:
    // What the last key line leaves to be done with values.
    enum class Section { None, Open, PassedOver };

    Status OnComment(std::string_view text, bool too_long) {
        if (text.starts_with(kPlainMark)) quoting_ = Quoting::Plain;
        if (too_long) ++skipped_;
        return {};
    }

    Status OnKey(std::string_view text, bool too_long) {
        EndList();
        section_ = Section::PassedOver;
        if (text.starts_with("[-")) return {};
        const auto end = text.rfind(']');
        if (too_long || end == std::string_view::npos || !IsLineEnd(text.substr(end + 1))) {
            ++skipped_;
            return {};
        }
        auto path = text.substr(1, end - 1);
        while (path.ends_with('\\')) path.remove_suffix(1);
        if (!IsKeyPath(path)) {
            ++skipped_;
            return {};
        }
        section_ = Section::Open;
        return visitor_.OnKey(std::string(path));
    }

    Status OnTooLong() {
        if (!list_ || !list_->broken) ++skipped_;
        list_.reset();
        return {};
    }

    Status OnValue(std::string_view text) {
        auto value = ParseValueLine(text, quoting_, Limit());
        if (value.kind == ValueLine::Kind::Malformed || section_ == Section::None) {
            ++skipped_;
            if (value.continues) list_ = List{{}, true};
            return {};
        }
        if (value.kind == ValueLine::Kind::Removal) return {};
        if (!value.continues) return Show(std::move(value));
        list_ = List{std::move(value), false};
        return {};
    }

    // A line of a list of hex bytes that an earlier one began.
    Status OnMoreBytes(std::string_view text) {
        auto end = HexEnd::Broken;
        if (!list_->broken) end = ReadHexBytes(text, Limit(), list_->value.bytes);
        if (end == HexEnd::Continues) return {};
        if (end == HexEnd::Broken) {
            if (!list_->broken) ++skipped_;
            list_->broken = true;
            if (text.ends_with('\\')) return {};
        }
        auto list = *std::exchange(list_, std::nullopt);
        return list.broken ? Status() : Show(std::move(list.value));
    }

    // A list that was to go on, and didn't.
    void EndList() {
        if (list_ && !list_->broken) ++skipped_;
        list_.reset();
    }

    Status Show(ValueLine line) {
        platform::RegistryValue value{line.type, std::move(line.bytes.data)};
        if (decodes_data_ && line.is_hex && IsText(value.type)) {
            if (value.data.size() % 2 != 0) {
                ++skipped_;
                return {};
            }
            value.data = Utf16ToUtf8(value.data);
        }
        if (!IsName(line.name, platform::kLongestValueName) ||
            value.data.size() > platform::kLargestValue) {
            ++skipped_;
            return {};
        }
        return visitor_.OnValue(line.name, value);
    }

    static bool IsText(RegistryType type) {
        return std::find(kTextTypes.begin(), kTextTypes.end(), type) != kTextTypes.end();
    }

    // Of data as they are written. UTF-8 has at least a byte for each two of UTF-16.
    std::size_t Limit() const { return platform::kLargestValue * (decodes_data_ ? 2 : 1); }

    struct List {
        ValueLine value;
        bool broken = false;  // and counted; its further lines are skipped with it
    };

    bool decodes_data_;
    platform::RegistryVisitor& visitor_;
    Quoting quoting_ = Quoting::Escaped;
    Section section_ = Section::None;
    std::optional<List> list_;
    std::uint64_t skipped_ = 0;
};

Result<const Version*> ReadVersion(TextLines& lines) {
    const auto line = lines.Next();
    if (!line.ok()) return line.error();
    if (line.value() && !line.value()->too_long) {
        const auto text = TrimBlanks(line.value()->text);
        for (const auto& version : kVersions) {
            if (text == version.first_line) return &version;
        }
    }
    return platform::Error{platform::ErrorKind::Malformed, "",
                           "the first line isn't that of a registry text"};
}

}  // namespace

Result<std::uint64_t> ParseRegistryText(platform::FileReader& reader,
                                        platform::RegistryVisitor& visitor) {
    TextLines lines(reader);
    const auto version = ReadVersion(lines);
    if (!version.ok()) return version.error();
    Parser parser(*version.value(), lines.is_utf16(), visitor);
    while (true) {
        const auto line = lines.Next();
        if (!line.ok()) return line.error();
        if (!line.value()) return parser.Finish();
        if (auto shown = parser.OnLine(*line.value()); !shown.ok()) return shown.error();
    }
}

}  // namespace velto::regedit
