#include "regedit/text_writer.h"

#include <utility>

#include "regedit/value_text.h"

namespace velto::regedit {
namespace {

constexpr std::string_view kFirstLines = "REGEDIT4\r\n\r\n";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kPiece = std::size_t{64} << 10;

}  // namespace

TextWriter::TextWriter(Write write) : write_(std::move(write)), buffer_(kFirstLines) {}

platform::Status TextWriter::OnKey(const std::string& path) {
    if (in_key_) buffer_ += kLineEnd;
    in_key_ = true;
    buffer_.append("[").append(path).append("]").append(kLineEnd);
    return WriteFull();
}

platform::Status TextWriter::OnValue(const std::string& name,
                                     const platform::RegistryValue& value) {
    AppendValueLine(name, value, buffer_);
    return WriteFull();
}

platform::Status TextWriter::Finish() {
    if (in_key_) buffer_ += kLineEnd;
    return write_(std::exchange(buffer_, {}));
}

platform::Status TextWriter::WriteFull() {
    if (buffer_.size() < kPiece) return {};
    auto written = write_(buffer_);
    buffer_.clear();
    return written;
}

}  // namespace velto::regedit
