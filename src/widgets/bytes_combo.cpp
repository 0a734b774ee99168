#include "widgets/bytes_combo.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr int kColumns = 24;

QByteArray ToData(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

}  // namespace

BytesCombo::BytesCombo(QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kColumns);
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

}  // namespace velto
