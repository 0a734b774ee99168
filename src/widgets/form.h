// Labelled rows and the frame of a dialog, as all windows have them.
//
// Every field gets a label as its buddy, which is its name for a screen reader; a "&" in a label
// makes its mnemonic. All widgets made here belong to the window that they are put into.
#pragma once

#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/bytes_fields.h"

namespace velto {

// Plain text, never markup. `wrapped` breaks it into as many lines as its width needs.
QLabel* MakeLabel(const QString& text, bool wrapped = false);

void AddRow(QFormLayout& form, const QString& label, QWidget& field);

struct PathRow {
    BytesEdit* field = nullptr;
    QPushButton* browse = nullptr;
};
// A field for a path with a button behind it: "Browse...", with or without a "&".
PathRow AddPathRow(QFormLayout& form, const QString& label, const QString& browse);

// A group box with a form inside.
QFormLayout* AddGroup(QVBoxLayout& layout, const QString& title);

// A push button that Enter presses only if it is the default one or has the focus.
QPushButton* MakeButton(const QString& text);

// A dialog with a column of contents. It is as large as these need, and may be enlarged.
class FormDialog : public QDialog {
  public:
    FormDialog(const QString& caption, QWidget* parent);

  protected:
    QVBoxLayout& contents() { return *contents_; }
    // The last row: OK, which Enter presses and which calls accept(); and Cancel if asked for.
    void AddOkButton(bool with_cancel = true);

  private:
    QVBoxLayout* contents_;
};

}  // namespace velto
