// A document over the configuration folder of a home, and the program's start there.
#pragma once

#include <string>

#include "shell/app_startup.h"
#include "store/velto_doc.h"
#include "support/documents.h"
#include "support/home_test.h"

namespace velto::test {

class DocumentTest : public HomeTest, public StartupWindow {
  protected:
    void OnLogLine(const std::string&) override {}
    void RunPathsDialog() override {}
    void Start() { CAppStartup(environment.ConfigFolder(), *this).Run(); }

    void WriteConfig(const std::string& name, const std::string& text) {
        WriteFile(InConfig(name + ".dta"), text);
    }
    std::string Config(const std::string& name) const { return ReadFile(InConfig(name + ".dta")); }

    FakeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
};

}  // namespace velto::test
