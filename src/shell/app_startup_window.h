// The splash: a picture above the lines of the start-up sequence, in a window without a border.
//
// It closes itself when the sequence has ended, and offers the user nothing to do meanwhile.
#pragma once

#include <QDialog>
#include <string>

#include "shell/app_startup.h"

class QPlainTextEdit;

namespace velto {

class CAppStartupWindow : public QDialog, public StartupWindow {
  public:
    CAppStartupWindow();

    // Shows itself, and runs the sequence with the window on the screen.
    void Run(CAppStartup& startup);

    // The line is on the screen when this returns.
    void OnLogLine(const std::string& line) override;
    void RunPathsDialog() override;

    // Neither Escape nor the window manager closes it.
    void reject() override {}

  private:
    QPlainTextEdit* log_;
};

}  // namespace velto
