#include "widgets/text.h"

#include <QByteArrayView>
#include <QStringDecoder>
#include <array>

namespace velto {
namespace {

// 0x80 to 0x9F of Windows-1252; the five bytes without a character keep their number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr unsigned char kFirstControl = 0x80;

QString FromWindows1252(std::string_view bytes) {
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const bool control = byte >= kFirstControl && byte < kFirstControl + kUpperControls.size();
        text += QChar(control ? kUpperControls.at(byte - kFirstControl) : char16_t{byte});
    }
    return text;
}

}  // namespace

QString FromBytes(std::string_view bytes) {
    using Flag = QStringDecoder::Flag;
    // Stateless: a sequence that is cut off at the end is an error.
    QStringDecoder utf8(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    const QString text = utf8(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return utf8.hasError() ? FromWindows1252(bytes) : text;
}

std::string ToBytes(const QString& text) {
    return text.toStdString();
}

QString Breakable(const QString& text) {
    constexpr int kLongestWord = 24;
    constexpr char16_t kZeroWidthSpace = 0x200B;
    QString broken;
    int run = 0;
    for (const auto c : text) {
        run = c.isLetterOrNumber() ? run + 1 : 0;
        if (run > kLongestWord) {
            broken += QChar(kZeroWidthSpace);
            run = 1;
        }
        broken += c;
    }
    return broken;
}

}  // namespace velto
