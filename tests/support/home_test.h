// A user's home in a temporary folder, with real files, a real registry store and real programs;
// only the message boxes are scripted.
#pragma once

#include <concepts>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/drives.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/registry.h"
#include "support/scripted_services.h"
#include "support/surroundings.h"

namespace velto::test {

class HomeTest : public ::testing::Test {
  protected:
    HomeTest() {
        EXPECT_TRUE(registry->OpenStore({}).ok());
        EXPECT_TRUE(files->MakeFolders(environment.ConfigFolder()).ok());
    }

    std::string InHome(std::string_view name) const { return home_folder / name; }
    std::string InConfig(std::string_view name) const {
        return platform::JoinPath(environment.ConfigFolder(), name);
    }
    // Writes a program for the shell; its path.
    std::string Script(std::string_view name, const std::string& text) const {
        WriteFile(InHome(name), "#!/bin/sh\n" + text + "\n");
        std::filesystem::permissions(InHome(name), std::filesystem::perms::owner_all);
        return InHome(name);
    }

    // The home's services with another one in its place, as long as the scope lives.
    template <class Service>
    platform::HostScope With(Service& other) const {
        auto with = services;
        with.registry = registry.get();  // which the test may have opened anew
        if constexpr (std::derived_from<Service, platform::FileService>) with.files = &other;
        if constexpr (std::derived_from<Service, platform::RegistryStore>) with.registry = &other;
        if constexpr (std::derived_from<Service, platform::LibraryService>) with.libraries = &other;
        return platform::HostScope(with);
    }

    // The text of a string value of HKEY_CURRENT_USER; nothing if there is none.
    std::optional<std::string> StringOf(std::string_view key, std::string_view name) {
        const auto open = registry->OpenKey(std::string(platform::kCurrentUser).append(key));
        if (!open.ok()) return {};
        return platform::ReadText(*open.value(), name, platform::kLargestValue);
    }
    void SetValue(std::string_view key, std::string_view name,
                  const platform::RegistryValue& value) {
        const auto path = std::string(platform::kCurrentUser).append(key);
        const platform::RegistryWrite write[] = {{path, std::string(name), value}};
        ASSERT_TRUE(platform::WriteValues(*registry, write).ok());
    }

    TemporaryFolder home_folder;
    platform::Environment environment{.program = BinaryFolder() + "/velto",
                                      .home = home_folder.path(),
                                      .drives = home_folder / "drives",
                                      .runner = "",
                                      .registry_editor = BinaryFolder() + "/velto-regedit",
                                      .start_folder = home_folder.path(),
                                      .child_variables = {{"VELTO_HOME", home_folder.path()}}};
    std::unique_ptr<platform::FileService> files = platform::MakeFileService();
    std::unique_ptr<platform::DriveTable> drives =
        platform::MakeDriveTable(*files, environment.drives, environment.home);
    std::unique_ptr<platform::RegistryStore> registry =
        platform::MakeSqliteRegistry(environment.RegistryFile());
    RecordingProcesses processes{environment};
    ScriptedBoxes boxes;
    ScriptedWaiting waiting;
    const platform::HostServices services{.environment = &environment,
                                          .files = files.get(),
                                          .drives = drives.get(),
                                          .registry = registry.get(),
                                          .processes = &processes,
                                          .boxes = &boxes,
                                          .waiting = &waiting};
    const platform::HostScope scope{services};
};

}  // namespace velto::test
