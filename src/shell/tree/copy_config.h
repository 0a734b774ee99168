// The command "Copy Selected Configuration".
#pragma once

#include "shell/tree/epsxe_tree.h"
#include "store/velto_doc.h"

namespace velto {

// Writes the selected configuration's file to "A copy of " and its name, whole, over a copy that is
// there. True if there is a new copy: the caller then refreshes the tree. False, after a message,
// if no configuration is selected, its name is too long, or a file can't be read or written; an
// old copy then is as it was.
bool OnCopyConfig(const CVeltoDoc& document, const CEpsxeTree& tree);

}  // namespace velto
