#include "platform/host.h"

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/instance.h"
#include "platform/libraries.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "platform/waiting.h"

namespace velto::platform {
namespace {

HostServices current;

}  // namespace

HostScope::HostScope(const HostServices& services) : previous_(current) {
    current = services;
}
HostScope::~HostScope() {
    current = previous_;
}

const Environment& HostEnvironment() {
    return *current.environment;
}
FileService& Files() {
    return *current.files;
}
const DriveTable& Drives() {
    return *current.drives;
}
RegistryStore& Registry() {
    return *current.registry;
}
ProcessService& Processes() {
    return *current.processes;
}
InstanceService& Instance() {
    return *current.instance;
}
MessageBoxes& Boxes() {
    return *current.boxes;
}
LibraryService& Libraries() {
    return *current.libraries;
}
WaitingService& Waiting() {
    return *current.waiting;
}

}  // namespace velto::platform
