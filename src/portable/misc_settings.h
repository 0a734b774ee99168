// The rules of the miscellaneous page: what belongs to no plug-in, the BIOS file and the
// emulator's extra command line.
//
// In the record `NULL` stands for a field that is empty. An edit goes to the record at once, and
// marks it changed. Texts are bytes. Document and editor aren't owned, and outlive this.
#pragma once

#include <string>
#include <string_view>

#include "store/velto_doc.h"

namespace velto {

class CMiscSettings {
  public:
    CMiscSettings(CVeltoDoc& document, Editor& editor) : document_(document), editor_(editor) {}

    // What the fields show.
    std::string_view Bios() const;
    std::string_view CommandLine() const;

    // The text of a field has become this, by the user's hand unless `loading` is set.
    void OnBiosChanged(std::string_view text) { Change(document_.bios, text); }
    void OnCommandLineChanged(std::string_view text) { Change(document_.commandLine, text); }

    // The stored path at which a search for a BIOS file begins: the emulator's folder for them; if
    // that isn't there, the file of the record, which may be empty.
    std::string BiosSearchStart() const;

    // The page copies the record into its fields: their texts change, and nobody edits them.
    bool loading = false;

  private:
    void Change(std::string& field, std::string_view text);

    CVeltoDoc& document_;
    Editor& editor_;
};

}  // namespace velto
