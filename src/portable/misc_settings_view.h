// The miscellaneous page, which a configuration's own node in the tree shows: "Bios File" and
// "Command Line". It shows the record and has nothing of its own.
#pragma once

#include "portable/misc_settings.h"
#include "widgets/form.h"
#include "widgets/page.h"

namespace velto {

class CMiscSettingsView : public Page {
  public:
    // Document and editor aren't owned. The destructor doesn't touch them.
    CMiscSettingsView(CVeltoDoc& document, Editor& editor);

    void Refresh() override;

  private:
    void BrowseBios();

    Editor& editor_;
    CMiscSettings settings_;
    BytesEdit* bios_ = nullptr;
    BytesEdit* command_line_;
};

}  // namespace velto
