// A document over the configuration folder of a home.
#pragma once

#include <string>

#include "store/velto_doc.h"
#include "support/fake_editor.h"
#include "support/home_test.h"

namespace velto::test {

class DocumentTest : public HomeTest {
  protected:
    void WriteConfig(const std::string& name, const std::string& text) {
        WriteFile(InConfig(name + ".dta"), text);
    }
    std::string Config(const std::string& name) const { return ReadFile(InConfig(name + ".dta")); }
    FakeEditor editor;
    CVeltoDoc document{environment.ConfigFolder(), editor};
};

}  // namespace velto::test
