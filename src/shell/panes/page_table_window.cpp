#include "shell/panes/page_table_window.h"

#include "portable/misc_settings_view.h"
#include "shell/panes/plain_pages_view.h"
#include "widgets/owned.h"

namespace velto {
namespace {

template <class View>
Page* Make(const PageServices& services) {
    return MakeOwned<View>(services);
}

constexpr PageRow kPages[] = {
    {.number = 0, .of = PageOf::Root, .icon = "tree-root", .make = Make<CInitalView>},
    {.number = 1,
     .of = PageOf::Configuration,
     .icon = "tree-configuration",
     .make = [](const PageServices& services) -> Page* {
         return MakeOwned<CMiscSettingsView>(services.document, services.editor);
     }},
    {.number = 2,
     .text = "Graphics",
     .icon = "tree-graphics",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The graphics plug-in of this configuration will be chosen here.");
     }},
    {.number = 3,
     .text = "Sound",
     .icon = "tree-sound",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The sound plug-in of this configuration, and what it plays, will be chosen here.");
     }},
    {.number = 4,
     .text = "Cd-Rom/Iso",
     .icon = "tree-cd-rom",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The drive or image file that this configuration plays from will be chosen here.");
     }},
    {.number = 5,
     .text = "NetPlay",
     .icon = "tree-netplay",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The network plug-in of this configuration will be chosen here.");
     }},
    {.number = 6,
     .text = "MemoryCards",
     .icon = "tree-memory-cards",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The two memory cards of this configuration will be chosen here.");
     }},
    {.number = 7, .of = PageOf::Group, .icon = "tree-group", .make = Make<CHeadView>},
    {.number = 8,
     .text = "GamePad",
     .icon = "tree-gamepad",
     .make = [](const PageServices&) -> Page* {
         return MakeOwned<PlaceholderView>(
             "The keys and gamepad buttons of this configuration will be chosen here.");
     }},
};

constexpr bool AreInOrder() {
    int number = 0;
    for (const auto& row : kPages) {
        if (row.number != number++) return false;
    }
    return true;
}
static_assert(AreInOrder());

}  // namespace

PageTable Pages() {
    return kPages;
}

}  // namespace velto
