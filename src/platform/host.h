// The set of services that the program runs on. Nothing else in the program is global.
#pragma once

namespace velto::platform {

class DriveTable;
class FileService;
class InstanceService;
class LibraryService;
class MessageBoxes;
class ProcessService;
class RegistryStore;
class WaitingService;
struct Environment;

// Not owned. A service that is null must not be asked for.
struct HostServices {
    const Environment* environment = nullptr;
    FileService* files = nullptr;
    const DriveTable* drives = nullptr;
    RegistryStore* registry = nullptr;
    ProcessService* processes = nullptr;
    InstanceService* instance = nullptr;
    MessageBoxes* boxes = nullptr;
    LibraryService* libraries = nullptr;
    WaitingService* waiting = nullptr;
};

// Makes the services the ones that Files(), Registry() and the other accessors return, for its
// own life; then those before it are back. No scope ends before the threads that use it.
class HostScope {
  public:
    explicit HostScope(const HostServices& services);
    ~HostScope();
    HostScope(const HostScope&) = delete;
    HostScope& operator=(const HostScope&) = delete;

  private:
    HostServices previous_;
};

}  // namespace velto::platform
