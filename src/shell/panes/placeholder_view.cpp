#include "shell/panes/placeholder_view.h"

#include <array>

#include "shell/tree/epsxe_tree.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr std::array<const char*, kPageNames.size()> kLines = {
    "The graphics plug-in of this configuration will be chosen here.",
    "The sound plug-in of this configuration, and what it plays, will be chosen here.",
    "The drive or image file that this configuration plays from will be chosen here.",
    "The network plug-in of this configuration will be chosen here.",
    "The two memory cards of this configuration will be chosen here.",
    "The keys and gamepad buttons of this configuration will be chosen here.",
};

}  // namespace

PlaceholderView::PlaceholderView(std::size_t page, QWidget* parent)
    : FormPage(FromBytes(kPageNames.at(page)), parent) {
    contents().addWidget(MakeLabel(kLines.at(page), true));
}

}  // namespace velto
