#include "widgets/bytes_edit.h"

#include "widgets/text.h"

namespace velto {
namespace {

constexpr int kColumns = 36;
constexpr int kFewestColumns = 12;

}  // namespace

void BytesEdit::SetBytes(std::string_view bytes) {
    bytes_ = bytes;
    setText(FromBytes(bytes));
    shown_ = text();
    setCursorPosition(0);
}

std::string BytesEdit::bytes() const {
    return text() == shown_ ? bytes_ : ToBytes(text());
}

QSize BytesEdit::sizeHint() const {
    return {fontMetrics().averageCharWidth() * kColumns, QLineEdit::sizeHint().height()};
}

QSize BytesEdit::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * kFewestColumns,
            QLineEdit::minimumSizeHint().height()};
}

}  // namespace velto
