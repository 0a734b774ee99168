// A user's home in a temporary folder, with real files, a real registry store and real programs;
// only the message boxes are scripted.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "support/scripted_boxes.h"
#include "support/scripted_waiting.h"
#include "support/temporary_folder.h"

namespace velto::test {

// Starts real programs and remembers what it was asked for.
class RecordingProcesses : public platform::ProcessService {
  public:
    explicit RecordingProcesses(platform::ProcessService& real) : real_(real) {}
    platform::Result<std::unique_ptr<platform::ChildProcess>> Start(
        const platform::ProcessRequest& request) override {
        requests.push_back(request);
        return real_.Start(request);
    }

    std::vector<platform::ProcessRequest> requests;

  private:
    platform::ProcessService& real_;
};

class HomeTest : public ::testing::Test {
  protected:
    HomeTest();

    std::string InHome(std::string_view name) const { return home_folder / name; }
    std::string InConfig(std::string_view name) const;
    // Writes a program for the shell; its path.
    std::string Script(std::string_view name, const std::string& text) const;

    // The home's services with another one in its place, as long as the scope lives.
    platform::HostScope With(platform::FileService& other) const;
    platform::HostScope With(platform::RegistryStore& other) const;
    platform::HostScope With(platform::LibraryService& libraries) const;

    // The text of a string value of HKEY_CURRENT_USER; nothing if there is none.
    std::optional<std::string> StringOf(std::string_view key, std::string_view name);
    void SetValue(std::string_view key, std::string_view name,
                  const platform::RegistryValue& value);

    TemporaryFolder home_folder;
    platform::Environment environment;
    std::unique_ptr<platform::FileService> files;
    std::unique_ptr<platform::DriveTable> drives;
    std::unique_ptr<platform::RegistryStore> registry;
    std::unique_ptr<platform::ProcessService> real_processes;
    RecordingProcesses processes;
    ScriptedBoxes boxes;
    ScriptedWaiting waiting;
    const platform::HostServices services;
    const platform::HostScope scope;
};

}  // namespace velto::test
