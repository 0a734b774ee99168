// The button bar below the pages: "Launch Epsxe", "Apply Settings" and "Reset Settings".
//
// The buttons call what the panel was given; an empty function is no command. The last two begin
// disabled: they have nothing to do until the record differs from its file.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "shell/panes/panes.h"

class QLabel;
class QPushButton;

namespace velto {

struct PanelCommands {
    std::function<void()> run;
    std::function<void()> apply;
    std::function<void()> reset;
};

class CPanelView : public QWidget, public ButtonBar {
  public:
    explicit CPanelView(const PanelCommands& commands, QWidget* parent = nullptr);

    void EnableApplyAndReset(bool enabled) override;
    void ShowRunning(const std::string& configuration) override;

  private:
    QPushButton* apply_;
    QPushButton* reset_;
    QLabel* running_;
};

}  // namespace velto
