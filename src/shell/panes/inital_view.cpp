#include "shell/panes/inital_view.h"

#include "widgets/owned.h"

namespace velto {
namespace {

constexpr const char* kGreeting =
    "Velto keeps the settings of ePSXe for each of your games.\n"
    "Choose a configuration in the tree to see and change it, then press \"Launch Epsxe\" to play.";

QWidget* AddStep(QVBoxLayout& page, const QString& line, const QString& button,
                 const std::function<void()>& command) {
    auto* const step = MakeOwned<QWidget>();
    page.addWidget(step);
    auto* const column = MakeOwned<QVBoxLayout>(step);
    column->setContentsMargins({});
    column->addWidget(MakeLabel(line, true));
    auto* const push = MakeButton(button);
    column->addWidget(push, 0, Qt::AlignLeft);
    if (command) QObject::connect(push, &QPushButton::clicked, push, [command] { command(); });
    return step;
}

}  // namespace

// The steps come before the greeting: who needs them finds them without a scroll.
CInitalView::CInitalView(const WelcomeCommands& commands, QWidget* parent)
    : FormPage("Welcome to Velto", parent),
      paths_step_(AddStep(contents(), "Velto doesn't know yet where ePSXe is on this computer.",
                          "Set &Program Locations...", commands.set_paths)),
      configuration_step_(AddStep(contents(),
                                  "There is no configuration yet. Make one for your first game.",
                                  "&New Configuration...", commands.new_configuration)) {
    AddGroup(contents(), "Welcome Message")->addRow(MakeLabel(kGreeting, true));
    Refresh(true, true);
}

QSize CInitalView::minimumSizeHint() const {
    constexpr int kLines = 8;
    return FormPage::minimumSizeHint().expandedTo({0, fontMetrics().lineSpacing() * kLines});
}

void CInitalView::Refresh(bool has_emulator, bool has_configurations) {
    paths_step_->setVisible(!has_emulator);
    configuration_step_->setVisible(!has_configurations);
}

}  // namespace velto
