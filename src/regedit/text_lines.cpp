#include "regedit/text_lines.h"

#include <algorithm>

#include "regedit/text_blanks.h"

namespace velto::regedit {
namespace {

using platform::Result;
using platform::Status;

constexpr std::size_t kPiece = std::size_t{64} << 10;
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// A full line and the CR that may end it.
constexpr std::size_t kMostKept = kLongestLine + 1;

}  // namespace

Result<std::optional<TextLine>> TextLines::Next() {
    line_.clear();
    too_long_ = false;
    bool begun = false;
    while (true) {
        if (next_ == buffer_.size()) {
            auto more = Fill();
            if (!more.ok()) return more.error();
            if (!more.value()) return begun ? std::optional(Line()) : std::nullopt;
        }
        begun = true;
        const auto rest = std::string_view{buffer_}.substr(next_);
        const auto end = rest.find('\n');
        Take(rest.substr(0, end));
        if (end != std::string_view::npos) {
            next_ += end + 1;
            if (line_.ends_with('\r') && !too_long_) line_.pop_back();
            return std::optional(Line());
        }
        next_ = buffer_.size();
    }
}

TextLine TextLines::Line() {
    if (line_.size() > kLongestLine) too_long_ = true;
    return {line_, too_long_};
}

void TextLines::Take(std::string_view piece) {
    if (line_.empty()) piece = SkipBlanks(piece);
    const auto kept = std::min(piece.size(), kMostKept - line_.size());
    line_.append(piece.substr(0, kept));
    if (kept < piece.size()) too_long_ = true;
}

// Whether there is more in the buffer.
Result<bool> TextLines::Fill() {
    buffer_.clear();
    next_ = 0;
    if (!started_) {
        if (auto mark = ReadMark(); !mark.ok()) return mark.error();
    }
    while (buffer_.empty() && !ended_) {
        raw_.clear();
        auto more = reader_.Read(decoder_ ? raw_ : buffer_, kPiece);
        if (!more.ok()) return more.error();
        ended_ = !more.value();
        if (!decoder_) continue;
        decoder_->Append(raw_, buffer_);
        if (ended_) decoder_->Finish(buffer_);
    }
    return !buffer_.empty();
}

// Reads the text's beginning, however small the pieces are that the file gives, and drops a mark.
Status TextLines::ReadMark() {
    started_ = true;
    while (buffer_.size() < kUtf8Mark.size() && !ended_) {
        auto more = reader_.Read(buffer_, kPiece);
        if (!more.ok()) return more.error();
        ended_ = !more.value();
    }
    if (buffer_.starts_with(kUtf8Mark)) {
        buffer_.erase(0, kUtf8Mark.size());
    } else if (buffer_.starts_with(kUtf16Mark)) {
        raw_ = buffer_.substr(kUtf16Mark.size());
        buffer_.clear();
        decoder_.emplace();
        decoder_->Append(raw_, buffer_);
        if (ended_) decoder_->Finish(buffer_);
    }
    return {};
}

}  // namespace velto::regedit
