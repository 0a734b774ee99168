#include "shell/panes/panel_view.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QTextDocument>
#include <QVBoxLayout>

#include "widgets/form.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

// One line, cut by "..." where it is too long; the tool tip has it whole.
class OneLine : public QLabel {
  public:
    OneLine() {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const auto line = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
        style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                              isEnabled(), line, foregroundRole());
    }
};

}  // namespace

CPanelView::CPanelView(const PanelCommands& commands, QWidget* parent)
    : QWidget(parent),
      apply_(MakeButton("&Apply Settings")),
      reset_(MakeButton("&Reset Settings")),
      running_(MakeOwned<OneLine>()) {
    auto* const launch = MakeButton("&Launch Epsxe");
    // Ends the page above it, which may be cut there.
    auto* const edge = MakeOwned<QFrame>();
    edge->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    auto* const column = MakeOwned<QVBoxLayout>(this);
    column->addWidget(edge);
    auto* const line = MakeOwned<QHBoxLayout>();
    for (auto* const button : {launch, apply_, reset_}) line->addWidget(button);
    line->addStretch();
    column->addLayout(line);
    column->addWidget(running_);
    column->addStretch();

    const auto on_click = [](QPushButton* button, const std::function<void()>& command) {
        if (command) connect(button, &QPushButton::clicked, button, [command] { command(); });
    };
    on_click(launch, commands.run);
    on_click(apply_, commands.apply);
    on_click(reset_, commands.reset);
    EnableApplyAndReset(false);
    ShowRunning({});
}

void CPanelView::EnableApplyAndReset(bool enabled) {
    apply_->setEnabled(enabled);
    reset_->setEnabled(enabled);
}

void CPanelView::ShowRunning(const std::string& configuration) {
    running_->setText(QString("Running: %1").arg(FromBytes(configuration)));
    running_->setToolTip(Qt::convertFromPlainText(running_->text()));
    running_->setVisible(!configuration.empty());
}

}  // namespace velto
