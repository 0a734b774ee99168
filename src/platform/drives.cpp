#include "platform/drives.h"

#include <tuple>
#include <utility>

#include "platform/ascii.h"

namespace velto::platform {
namespace {

class LinkedDrives : public DriveTable {
  public:
    LinkedDrives(FileService& files, std::string drives_folder, std::string home)
        : files_(files), drives_folder_(std::move(drives_folder)), home_(std::move(home)) {}

    std::string Folder(char letter) const override {
        for (const char spelling : {ToLower(letter), ToUpper(letter)}) {
            auto entry = EntryOf(spelling);
            const auto info = files_.Info(entry);
            // A link that leads nowhere is given all the same: its medium may come back.
            if (info.ok() || info.error().kind != ErrorKind::NotFound) return entry;
        }
        if (ToLower(letter) == 'c') {
            auto folder = JoinPath(home_, "drive_c");
            // A failure shows when a file below it is opened.
            std::ignore = files_.MakeFolders(folder);
            return folder;
        }
        return ToLower(letter) == 'z' ? "/" : EntryOf(ToLower(letter));
    }

  private:
    std::string EntryOf(char letter) const {
        return JoinPath(drives_folder_, std::string(1, letter) + ":");
    }

    FileService& files_;
    std::string drives_folder_;
    std::string home_;
};

}  // namespace

std::unique_ptr<DriveTable> MakeDriveTable(FileService& files, std::string drives_folder,
                                           std::string home) {
    return std::make_unique<LinkedDrives>(files, std::move(drives_folder), std::move(home));
}

}  // namespace velto::platform
