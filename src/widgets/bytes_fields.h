// Controls for bytes that come from outside: what the user doesn't change comes back as the very
// bytes that it was.
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

// bytes() gives back what was set for as long as the field shows its text; what the user makes of
// it comes back as UTF-8.
class BytesEdit : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;

    void SetBytes(std::string_view bytes);
    std::string bytes() const;

    // Wide enough for a path, and never too narrow to be read.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    std::string bytes_;
    QString shown_;  // as the field shows bytes_
};

// A combo box that offers bytes, and gives the chosen ones back.
class BytesCombo : public QComboBox {
  public:
    // As wide as a name of usual length; longer ones are cut by "...".
    explicit BytesCombo(QWidget* parent = nullptr);

    // Offers these entries, in the order of names without regard to case.
    void SetSorted(std::vector<std::string> entries);
    void Select(std::string_view entry);  // nothing changes if it isn't offered
    std::string bytes() const;            // empty if nothing is offered
};

// A list box, kept in the order of names without regard to case.
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
