// The miscellaneous page, which a configuration's own node in the tree shows: "Bios File" and
// "Command Line". It shows the record and has nothing of its own.
#pragma once

#include "portable/misc_settings.h"
#include "widgets/form.h"

namespace velto {

class CMiscSettingsView : public FormPage {
  public:
    // Document and editor aren't owned. The destructor doesn't touch them.
    CMiscSettingsView(CVeltoDoc& document, Editor& editor, QWidget* parent = nullptr);

    // Shows the record of this configuration.
    void Refresh(const std::string& configuration);

  private:
    void BrowseBios();

    CMiscSettings settings_;
    BytesEdit* bios_ = nullptr;
    BytesEdit* command_line_;
};

}  // namespace velto
