#include "widgets/form.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>

#include "widgets/owned.h"

namespace velto {

QLabel* MakeLabel(const QString& text, bool wrapped) {
    auto* const label = MakeOwned<QLabel>(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(wrapped);
    return label;
}

void AddRow(QFormLayout& form, const QString& label, QWidget& field) {
    auto* const name = MakeLabel(label);
    name->setBuddy(&field);
    form.addRow(name, &field);
}

PathRow AddPathRow(QFormLayout& form, const QString& label, const QString& browse) {
    const PathRow row{MakeOwned<BytesEdit>(), MakeButton(browse)};
    auto* const fields = MakeOwned<QHBoxLayout>();
    fields->addWidget(row.field, 1);
    fields->addWidget(row.browse);
    auto* const name = MakeLabel(label);
    name->setBuddy(row.field);
    form.addRow(name, fields);
    row.browse->setAccessibleDescription(QString(label).remove('&'));
    return row;
}

QFormLayout* AddGroup(QVBoxLayout& layout, const QString& title) {
    auto* const group = MakeOwned<QGroupBox>(title);
    layout.addWidget(group);
    return MakeOwned<QFormLayout>(group);
}

QPushButton* MakeButton(const QString& text) {
    auto* const button = MakeOwned<QPushButton>(text);
    button->setAutoDefault(false);
    return button;
}

FormDialog::FormDialog(const QString& caption, QWidget* parent)
    : QDialog(parent), contents_(MakeOwned<QVBoxLayout>(this)) {
    setWindowTitle(caption);
}

void FormDialog::AddOkButton(bool with_cancel) {
    auto* const buttons = MakeOwned<QDialogButtonBox>();
    // Their keys are Enter and Escape, on every desktop: a mnemonic of the desktop's own could be
    // one that a field has.
    buttons->addButton(QDialogButtonBox::Ok)->setText("OK");
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    if (with_cancel) buttons->addButton(QDialogButtonBox::Cancel)->setText("Cancel");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    contents_->addWidget(buttons);
}

}  // namespace velto
