#include "support/home_test.h"

#include <filesystem>

namespace velto::test {
namespace {

platform::Environment EnvironmentOf(const std::string& home) {
    platform::Environment environment;
    environment.program = BinaryFolder() + "/velto";
    environment.home = home;
    environment.drives = home + "/drives";
    environment.registry_editor = BinaryFolder() + "/velto-regedit";
    environment.start_folder = home;
    environment.child_variables = {{"VELTO_HOME", home}};
    return environment;
}

std::string CurrentUser(std::string_view key) {
    return std::string(platform::kCurrentUser).append(key);
}

}  // namespace

HomeTest::HomeTest()
    : environment(EnvironmentOf(home_folder.path())),
      files(platform::MakeFileService()),
      drives(platform::MakeDriveTable(*files, environment.drives, environment.home)),
      registry(platform::MakeSqliteRegistry(environment.RegistryFile())),
      real_processes(platform::MakeProcessService(environment)),
      processes(*real_processes),
      services({.environment = &environment,
                .files = files.get(),
                .drives = drives.get(),
                .registry = registry.get(),
                .processes = &processes,
                .boxes = &boxes,
                .waiting = &waiting}),
      scope(services) {
    EXPECT_TRUE(registry->OpenStore({}).ok());
    EXPECT_TRUE(files->MakeFolders(environment.ConfigFolder()).ok());
}

platform::HostScope HomeTest::With(platform::FileService& other) const {
    auto with = services;
    with.files = &other;
    with.registry = registry.get();  // which the test may have opened anew
    return platform::HostScope(with);
}

platform::HostScope HomeTest::With(platform::RegistryStore& other) const {
    auto with = services;
    with.registry = &other;
    return platform::HostScope(with);
}

platform::HostScope HomeTest::With(platform::LibraryService& libraries) const {
    auto with = services;
    with.libraries = &libraries;
    return platform::HostScope(with);
}

std::string HomeTest::InConfig(std::string_view name) const {
    return platform::JoinPath(environment.ConfigFolder(), name);
}

std::string HomeTest::Script(std::string_view name, const std::string& text) const {
    WriteFile(InHome(name), "#!/bin/sh\n" + text + "\n");
    std::filesystem::permissions(InHome(name), std::filesystem::perms::owner_all);
    return InHome(name);
}

std::optional<std::string> HomeTest::StringOf(std::string_view key, std::string_view name) {
    const auto open = registry->OpenKey(CurrentUser(key));
    if (!open.ok()) return {};
    const auto value = open.value()->Query(name);
    if (!value.ok() || value.value().type != platform::RegistryType::String) return {};
    return value.value().data.substr(0, value.value().data.find('\0'));
}

void HomeTest::SetValue(std::string_view key, std::string_view name,
                        const platform::RegistryValue& value) {
    const platform::RegistryWrite write[] = {{CurrentUser(key), std::string(name), value}};
    ASSERT_TRUE(platform::WriteValues(*registry, write).ok());
}

}  // namespace velto::test
