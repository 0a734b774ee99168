#include "shell/panes/editor_panes_window.h"

#include <utility>

#include "portable/misc_settings_view.h"
#include "shell/panes/head_view.h"
#include "shell/panes/placeholder_view.h"
#include "widgets/owned.h"

namespace velto {
namespace {

constexpr int kMiscPage = 1;
constexpr int kLastPage = 8;

}  // namespace

EditorPanes::EditorPanes(QWidget* tree_view, CVeltoDoc& document, PaneServices services,
                         QWidget* parent)
    : CMultiViewSplitterWindow(0, true, tree_view, nullptr, parent),
      document_(document),
      services_(std::move(services)),
      panel_(MakeOwned<CPanelView>(services_.panel)),
      right_(AddNestedSplitter(1, nullptr, nullptr, false)) {
    AddPages();
    PutDividerBehindPages();
    right_->AddView(1, panel_);
    LoadState();
}

// In the order of their numbers.
void EditorPanes::AddPages() {
    welcome_ = MakeOwned<CInitalView>(services_.welcome);
    misc_ = MakeOwned<CMiscSettingsView>(document_, services_.editor);
    head_ = MakeOwned<CHeadView>();
    right_->AddView(0, welcome_);
    right_->AddView(0, misc_);
    for (std::size_t page = 0; page < 5; ++page) {
        right_->AddView(0, MakeOwned<PlaceholderView>(page));
    }
    right_->AddView(0, head_);
    right_->AddView(0, MakeOwned<PlaceholderView>(5));
}

// The Tab key takes the parts in the order of their making, in which the divider is before the
// pages above it. Qt puts it only behind a part that may have the focus.
void EditorPanes::PutDividerBehindPages() {
    auto* const last = window()->previousInFocusChain();
    const auto policy = last->focusPolicy();
    last->setFocusPolicy(Qt::TabFocus);
    setTabOrder(last, right_->handle(1));
    last->setFocusPolicy(policy);
}

void EditorPanes::ShowPage(int page) {
    right_->SwitchView(0, page < 0 || page > kLastPage ? kMiscPage : page);
    RefreshPages();
}

void EditorPanes::RefreshPages() {
    const auto* const shown = right_->GetPane(0, 0);
    if (shown == welcome_) {
        welcome_->Refresh(!document_.settings.GetEmulatorPath().empty(),
                          !services_.has_configurations || services_.has_configurations());
    } else if (shown == misc_) {
        misc_->Refresh(services_.editor.GetSelectedConfigName());
    } else if (shown == head_) {
        head_->Refresh(services_.editor.GetSelectedConfigName(),
                       services_.group_size ? services_.group_size() : 0);
    }
}

}  // namespace velto
