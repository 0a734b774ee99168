#include "regedit/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "platform/ascii.h"
#include "regedit/text_blanks.h"

namespace velto::regedit {
namespace {

using platform::RegistryType;

enum class Form { Text, Dword, Binary, TypedBytes, Removal };

// What a value form begins with.
constexpr std::array<std::pair<std::string_view, Form>, 5> kForms = {{
    {"\"", Form::Text},
    {"dword:", Form::Dword},
    {"hex:", Form::Binary},
    {"hex(", Form::TypedBytes},
    {"-", Form::Removal},
}};

constexpr std::size_t kMostDigits = 8;  // of 32 bits
constexpr int kHexadecimal = 16;

// Escaping at most doubles a text.
constexpr std::size_t kMostEscaped = 2;

bool IsEscapeAt(std::string_view text, std::size_t i) {
    return text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '\\' || text[i + 1] == '"');
}

bool IsEscaped(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsEscapeAt(text, i)) {
            ++i;
        } else if (text[i] == '\\' || text[i] == '"') {
            return false;
        }
    }
    return true;
}

// What stands between two quotes.
std::string Unquoted(std::string_view text, Quoting quoting) {
    if (quoting == Quoting::Plain || !IsEscaped(text)) return std::string(text);
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsEscapeAt(text, i)) ++i;
        result += text[i];
    }
    return result;
}

// Takes up to eight hexadecimal digits from the front of `text`; false if there is none.
bool TakeNumber(std::string_view& text, std::uint32_t& number) {
    std::size_t count = 0;
    while (count < std::min(text.size(), kMostDigits) && HexDigit(text[count])) ++count;
    std::from_chars(text.data(), text.data() + count, number, kHexadecimal);
    text.remove_prefix(count);
    return count > 0;
}

// Reads the forms of one line, of which several may be tried as its value.
class FormReader {
  public:
    FormReader(std::string_view line, Quoting quoting, std::size_t limit)
        : line_(line), quoting_(quoting), limit_(limit), last_quote_(line.rfind('"')) {
        quote_ends_line_ =
            last_quote_ != std::string_view::npos && IsLineEnd(line.substr(last_quote_ + 1));
    }

    // Whether a form fills the line from `begin` on; then its kind, type and data are in `value`.
    // A text that is too long is such a form, of a malformed value: to try others behind it would
    // read it again and again.
    bool Read(std::size_t begin, ValueLine& value) {
        const auto rest = line_.substr(begin);
        for (const auto& [word, form] : kForms) {
            if (platform::EqualsIgnoringCase(rest.substr(0, word.size()), word)) {
                return Read(form, begin + word.size(), value);
            }
        }
        return false;
    }

    // A form tried was a list of hex bytes, and the line's end continues it.
    bool hex_continues() const { return hex_tried_ && line_.ends_with('\\'); }

  private:
    bool Read(Form form, std::size_t begin, ValueLine& value) {
        auto rest = line_.substr(begin);
        value.kind = form == Form::Removal ? ValueLine::Kind::Removal : ValueLine::Kind::Value;
        switch (form) {
            case Form::Text:
                return ReadText(begin, value);
            case Form::Dword:
                return ReadDword(rest, value);
            case Form::Binary:
                value.type = RegistryType::Binary;
                return ReadHex(rest, value);
            case Form::TypedBytes:
                return ReadType(rest, value.type) && ReadHex(rest, value);
            case Form::Removal:
                return IsLineEnd(rest);
        }
        return false;
    }

    bool ReadText(std::size_t begin, ValueLine& value) const {
        if (!quote_ends_line_ || last_quote_ < begin) return false;
        const auto quoted = line_.substr(begin, last_quote_ - begin);
        if (quoted.size() / kMostEscaped > limit_) {
            value.kind = ValueLine::Kind::Malformed;
            return true;
        }
        value.type = RegistryType::String;
        value.is_hex = false;
        value.bytes.data = Unquoted(quoted, quoting_);
        value.bytes.data += '\0';
        if (value.bytes.data.size() > limit_) value.kind = ValueLine::Kind::Malformed;
        return true;
    }

    static bool ReadDword(std::string_view rest, ValueLine& value) {
        rest = SkipBlanks(rest);
        std::uint32_t number = 0;
        if (!TakeNumber(rest, number) || !IsLineEnd(rest)) return false;
        auto dword = platform::DwordValue(number);
        value.type = dword.type;
        value.bytes.data = std::move(dword.data);
        return true;
    }

    static bool ReadType(std::string_view& rest, RegistryType& type) {
        constexpr std::string_view kEnd = "):";
        std::uint32_t number = 0;
        if (!TakeNumber(rest, number) || !rest.starts_with(kEnd)) return false;
        rest.remove_prefix(kEnd.size());
        type = RegistryType{number};
        return true;
    }

    bool ReadHex(std::string_view rest, ValueLine& value) {
        hex_tried_ = true;
        value.bytes = {};
        value.is_hex = true;
        const auto end = ReadHexBytes(rest, limit_, value.bytes);
        value.continues = end == HexEnd::Continues;
        return end != HexEnd::Broken;
    }

    std::string_view line_;
    Quoting quoting_;
    std::size_t limit_;
    std::size_t last_quote_;
    bool quote_ends_line_ = false;
    bool hex_tried_ = false;
};

// Where the form of a name that ends at `quote` begins; npos if there is no `=` in between.
std::size_t FormBehind(std::string_view line, std::size_t quote, bool blanks_allowed) {
    auto rest = line.substr(quote + 1);
    if (blanks_allowed) rest = SkipBlanks(rest);
    if (!rest.starts_with('=')) return std::string_view::npos;
    rest.remove_prefix(1);
    if (blanks_allowed) rest = SkipBlanks(rest);
    return line.size() - rest.size();
}

bool ReadNamed(std::string_view line, Quoting quoting, bool blanks_allowed, FormReader& forms,
               ValueLine& value) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (quoting == Quoting::Escaped && IsEscapeAt(line, i)) {
            ++i;
            continue;
        }
        if (line[i] != '"') continue;
        const auto form = FormBehind(line, i, blanks_allowed);
        if (form != std::string_view::npos && forms.Read(form, value)) {
            const auto name = line.substr(1, i - 1);
            if (name.size() / kMostEscaped > platform::kLongestValueName) {
                value.kind = ValueLine::Kind::Malformed;
            } else {
                value.name = Unquoted(name, quoting);
            }
            return true;
        }
    }
    return false;
}

bool ReadDefault(std::string_view line, FormReader& forms, ValueLine& value) {
    const auto form = FormBehind(line, 0, true);
    return form != std::string_view::npos && forms.Read(form, value);
}

// A string that has the quoted form: one final NUL, and nothing that would end it or its line.
bool IsQuotable(std::string_view data) {
    constexpr std::string_view kNotQuoted("\0\r\n", 3);
    return data.ends_with('\0') && data.find_first_of(kNotQuoted) == data.size() - 1;
}

void AppendQuoted(std::string_view text, std::string& out) {
    out += '"';
    for (const char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    out += '"';
}

std::string HexNumber(std::uint32_t number) {
    std::array<char, kMostDigits> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, kHexadecimal).ptr;
    return {digits.data(), end};
}

}  // namespace

ValueLine ParseValueLine(std::string_view line, Quoting quoting, std::size_t limit) {
    ValueLine value;
    FormReader forms(line, quoting, limit);
    bool read = false;
    if (line.starts_with('@')) {
        read = ReadDefault(line, forms, value);
    } else if (line.starts_with('"')) {
        // In plain text blanks are part of the name if they can be.
        read = (quoting == Quoting::Plain && ReadNamed(line, quoting, false, forms, value)) ||
               ReadNamed(line, quoting, true, forms, value);
    }
    if (!read) {
        value = {};
        value.continues = forms.hex_continues();
    }
    return value;
}

void AppendValueLine(std::string_view name, const platform::RegistryValue& value,
                     std::string& out) {
    const std::size_t begin = out.size();
    if (name.empty()) {
        out += '@';
    } else {
        AppendQuoted(name, out);
    }
    out += '=';
    const std::string_view data = value.data;
    if (value.type == RegistryType::String && IsQuotable(data)) {
        AppendQuoted(data.substr(0, data.size() - 1), out);
    } else if (const auto number = platform::DwordIn(data);
               value.type == RegistryType::Dword && number) {
        const auto digits = HexNumber(*number);
        out.append("dword:").append(kMostDigits - digits.size(), '0').append(digits);
    } else {
        if (value.type == RegistryType::Binary) {
            out += "hex:";
        } else {
            out.append("hex(").append(HexNumber(static_cast<std::uint32_t>(value.type)));
            out += "):";
        }
        AppendHexBytes(data, out.size() - begin, out);
    }
    out += "\r\n";
}

}  // namespace velto::regedit
