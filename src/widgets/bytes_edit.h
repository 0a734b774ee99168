// A text field for bytes that come from outside.
//
// bytes() gives back the very bytes that were set for as long as the field shows their text; what
// the user makes of it comes back as UTF-8.
#pragma once

#include <QLineEdit>
#include <string>
#include <string_view>

namespace velto {

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

}  // namespace velto
