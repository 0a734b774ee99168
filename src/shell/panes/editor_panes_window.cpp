#include "shell/panes/editor_panes_window.h"

#include "widgets/owned.h"
#include "widgets/page.h"
#include "widgets/text.h"

namespace velto {

EditorPanes::EditorPanes(QWidget* tree_view, PageTable pages, const PageServices& services,
                         const PanelCommands& commands, QWidget* parent)
    : CMultiViewSplitterWindow(0, true, tree_view, nullptr, parent),
      panel_(MakeOwned<CPanelView>(commands)),
      right_(AddNestedSplitter(1, nullptr, nullptr, false)),
      fallback_(RowFor(pages, PageOf::Configuration).number) {
    AddPages(pages, services);
    PutDividerBehindPages();
    right_->AddView(1, panel_);
    LoadState();
}

void EditorPanes::AddPages(PageTable pages, const PageServices& services) {
    for (const auto& row : pages) {
        auto* const page = row.make(services);
        if (row.of == PageOf::OwnNode) page->SetHeading(FromBytes(row.text));
        right_->AddView(0, page);
        pages_.push_back(page);
    }
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

void EditorPanes::ShowPage(int number) {
    if (number < 0 || number >= static_cast<int>(pages_.size())) number = fallback_;
    if (shown_ != nullptr) shown_->Hidden();
    shown_ = pages_.at(static_cast<std::size_t>(number));
    right_->SwitchView(0, number);
    shown_->Refresh();
    shown_->Shown();
}

void EditorPanes::RefreshPage() {
    if (shown_ != nullptr) shown_->Refresh();
}

}  // namespace velto
