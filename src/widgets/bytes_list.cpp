#include "widgets/bytes_list.h"

#include <algorithm>

#include "platform/ascii.h"
#include "widgets/text.h"

namespace velto {

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
