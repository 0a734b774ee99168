// Drive letters, and the folders that stand for them on this host.
//
// The drive folder holds links: `x:` leads to the files of drive x. Where they aren't given,
// `c:` is the folder `drive_c` of the user's data folder and `z:` is the host's root.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace velto::platform {

class DriveTable {
  public:
    virtual ~DriveTable() = default;
    // The folder of the drive, without "/" at the end but for the root itself. The letter may be
    // in either case. A letter without an entry gives the path that its entry would have.
    virtual std::string Folder(char letter) const = 0;
};

const DriveTable& Drives();

// `drives_folder` holds the links, `home` the folder `drive_c`, which is made when it is first
// asked for.
std::unique_ptr<DriveTable> MakeDriveTable(FileService& files, std::string drives_folder,
                                           std::string home);

}  // namespace velto::platform
