#include "widgets/form.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFontInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QScrollBar>
#include <algorithm>

#include "widgets/owned.h"

namespace velto {
namespace {

// Bold and larger than the text around it, at any size of this.
class HeadingLabel : public QLabel {
  public:
    HeadingLabel() {
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        TakeFont();
    }

  protected:
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::ApplicationFontChange) TakeFont();
        QLabel::changeEvent(event);
    }

  private:
    void TakeFont() {
        constexpr double kLarger = 1.4;
        auto font = QApplication::font();
        font.setPointSizeF(QFontInfo(font).pointSizeF() * kLarger);
        font.setBold(true);
        setFont(font);
    }
};

}  // namespace

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

FormPage::FormPage(const QString& heading, QWidget* parent)
    : QScrollArea(parent), heading_(MakeOwned<HeadingLabel>()) {
    auto* const inside = MakeOwned<QWidget>();
    auto* const column = MakeOwned<QVBoxLayout>(inside);
    column->addWidget(heading_);
    contents_ = MakeOwned<QVBoxLayout>();
    column->addLayout(contents_);
    column->addStretch();
    setWidget(inside);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    SetHeading(heading);
    // A stop for the keyboard only while there is something to scroll.
    setFocusPolicy(Qt::NoFocus);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int, int last) { setFocusPolicy(last > 0 ? Qt::StrongFocus : Qt::NoFocus); });
}

QSize FormPage::minimumSizeHint() const {
    constexpr int kMostLines = 12;
    const auto needed = widget()->minimumSizeHint().height();
    return {QScrollArea::minimumSizeHint().width(),
            std::min(needed, fontMetrics().lineSpacing() * kMostLines)};
}

void FormPage::SetHeading(const QString& heading) {
    heading_->setText(heading);
    setAccessibleName(heading);
}

}  // namespace velto
