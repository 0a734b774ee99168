#include "widgets/page.h"

#include <QApplication>
#include <QEvent>
#include <QFontInfo>
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

Page::Page(const QString& heading, QWidget* parent)
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

QSize Page::minimumSizeHint() const {
    constexpr int kMostLines = 12;
    const auto needed = widget()->minimumSizeHint().height();
    return {QScrollArea::minimumSizeHint().width(),
            std::min(needed, fontMetrics().lineSpacing() * kMostLines)};
}

void Page::SetHeading(const QString& heading) {
    heading_->setText(heading);
    setAccessibleName(heading);
}

}  // namespace velto
