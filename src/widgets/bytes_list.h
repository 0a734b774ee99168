// A list box of bytes, kept in the order of names without regard to case.
#pragma once

#include <QListWidget>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

class BytesList : public QListWidget {
  public:
    using QListWidget::QListWidget;

    void Add(const std::string& entry);
    void RemoveSelected();
    bool HasSelection() const { return !selectedItems().isEmpty(); }
    const std::vector<std::string>& entries() const { return entries_; }

  private:
    std::vector<std::string> entries_;  // as the rows
};

}  // namespace velto
