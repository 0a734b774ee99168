#include "widgets/bytes_fields.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/ascii.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr int kEditColumns = 36;
constexpr int kFewestEditColumns = 12;
constexpr int kComboColumns = 24;

QByteArray ToData(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

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
    return {fontMetrics().averageCharWidth() * kEditColumns, QLineEdit::sizeHint().height()};
}

QSize BytesEdit::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * kFewestEditColumns,
            QLineEdit::minimumSizeHint().height()};
}

BytesCombo::BytesCombo(QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kComboColumns);
}

void BytesCombo::SetSorted(std::vector<std::string> entries) {
    clear();
    std::sort(entries.begin(), entries.end(), platform::LessIgnoringCase);
    for (const auto& entry : entries) addItem(FromBytes(entry), ToData(entry));
}

void BytesCombo::Select(std::string_view entry) {
    const auto index = findData(ToData(entry));
    if (index >= 0) setCurrentIndex(index);
}

std::string BytesCombo::bytes() const {
    return currentData().toByteArray().toStdString();
}

void BytesList::Add(const std::string& entry) {
    const auto at =
        std::upper_bound(entries_.begin(), entries_.end(), entry, platform::LessIgnoringCase);
    insertItem(static_cast<int>(at - entries_.begin()), FromBytes(entry));
    entries_.insert(at, entry);
}

void BytesList::RemoveSelected() {
    for (const auto* item : selectedItems()) {
        const int at = row(item);
        entries_.erase(entries_.begin() + at);
        const std::unique_ptr<QListWidgetItem> removed(takeItem(at));
    }
}

}  // namespace velto
