#include "shell/panes/plain_pages_view.h"

#include "widgets/form.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr const char* kGreeting =
    "Velto keeps the settings of ePSXe for each of your games.\n"
    "Choose a configuration in the tree to see and change it, then press \"Launch Epsxe\" to play.";

QWidget* AddStep(QVBoxLayout& page, const QString& line, const QString& button,
                 const std::function<void()>& act) {
    auto* const step = MakeOwned<QWidget>();
    page.addWidget(step);
    auto* const column = MakeOwned<QVBoxLayout>(step);
    column->setContentsMargins({});
    column->addWidget(MakeLabel(line, true));
    auto* const push = MakeButton(button);
    column->addWidget(push, 0, Qt::AlignLeft);
    QObject::connect(push, &QPushButton::clicked, push, act);
    return step;
}

QString Count(std::size_t configurations) {
    if (configurations == 0) return "There is no configuration in this group.";
    if (configurations == 1) return "There is one configuration in this group.";
    return QString("There are %1 configurations in this group.").arg(configurations);
}

}  // namespace

// The steps come before the greeting: who needs them finds them without a scroll.
CInitalView::CInitalView(const PageServices& services)
    : Page("Welcome to Velto"),
      services_(services),
      paths_step_(AddStep(contents(), "Velto doesn't know yet where ePSXe is on this computer.",
                          "Set &Program Locations...",
                          [this] { services_.run(Command::ProgramLocations); })),
      configuration_step_(
          AddStep(contents(), "There is no configuration yet. Make one for your first game.",
                  "&New Configuration...", [this] { services_.run(Command::NewConfiguration); })) {
    AddGroup(contents(), "Welcome Message")->addRow(MakeLabel(kGreeting, true));
    paths_step_->hide();
    configuration_step_->hide();
}

QSize CInitalView::minimumSizeHint() const {
    constexpr int kLines = 8;
    return Page::minimumSizeHint().expandedTo({0, fontMetrics().lineSpacing() * kLines});
}

// The root is selected, or what has its name: a configuration that can't be loaded.
void CInitalView::Refresh() {
    paths_step_->setVisible(services_.document.settings.GetEmulatorPath().empty());
    configuration_step_->setVisible(services_.count_selected() == 0);
}

CHeadView::CHeadView(const PageServices& services)
    : services_(services), contents_line_(MakeLabel({}, true)) {
    contents().addWidget(contents_line_);
}

void CHeadView::Refresh() {
    SetHeading(FromBytes(services_.editor.GetSelectedConfigName()));
    contents_line_->setText(Count(services_.count_selected()));
}

PlaceholderView::PlaceholderView(const QString& line) {
    contents().addWidget(MakeLabel(line, true));
}

}  // namespace velto
