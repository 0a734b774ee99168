// The services of this host itself, as the environment and the program's own file tell where they
// work.
#pragma once

#include <memory>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/instance.h"
#include "platform/libraries.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "platform/waiting.h"

namespace velto::platform {

// Owns them. The registry isn't open yet, and nothing is locked.
class RealHost {
  public:
    const Environment& environment() const { return environment_; }
    RegistryStore& registry() const { return *registry_; }
    // For a HostScope. Message boxes are the caller's, and so is waiting, but where nothing is
    // shown.
    HostServices Services(MessageBoxes& boxes) const { return Services(boxes, *silent_waiting_); }
    HostServices Services(MessageBoxes& boxes, WaitingService& waiting) const {
        return {.environment = &environment_,
                .files = files_.get(),
                .drives = drives_.get(),
                .registry = registry_.get(),
                .processes = processes_.get(),
                .instance = instance_.get(),
                .boxes = &boxes,
                .libraries = libraries_.get(),
                .waiting = &waiting};
    }

  private:
    const std::unique_ptr<FileService> files_ = MakeFileService();
    const Environment environment_ = ReadEnvironment(*files_);
    const std::unique_ptr<DriveTable> drives_ =
        MakeDriveTable(*files_, environment_.drives, environment_.home);
    const std::unique_ptr<RegistryStore> registry_ =
        MakeSqliteRegistry(environment_.RegistryFile());
    const std::unique_ptr<ProcessService> processes_ = MakeProcessService(environment_);
    const std::unique_ptr<InstanceService> instance_ =
        MakeInstanceService(environment_.program, environment_.home);
    const std::unique_ptr<LibraryService> libraries_ =
        MakeLibraryService(*processes_, environment_.program);
    const std::unique_ptr<WaitingService> silent_waiting_ = MakeSilentWaiting();
};

}  // namespace velto::platform
