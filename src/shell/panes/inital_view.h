// The welcome page, which the root of the tree shows: a greeting and, for who has just begun, the
// next step with the button that does it.
#pragma once

#include <functional>

#include "widgets/form.h"

namespace velto {

// An empty function is no command.
struct WelcomeCommands {
    std::function<void()> set_paths;
    std::function<void()> new_configuration;
};

class CInitalView : public FormPage {
  public:
    explicit CInitalView(const WelcomeCommands& commands, QWidget* parent = nullptr);

    // Whether the emulator's place is known, and whether there is anything to choose.
    void Refresh(bool has_emulator, bool has_configurations);

    // At any size of the letters a first step can be read without a scroll.
    QSize minimumSizeHint() const override;

  private:
    QWidget* paths_step_;
    QWidget* configuration_step_;
};

}  // namespace velto
