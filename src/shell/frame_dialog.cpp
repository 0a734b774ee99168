#include "shell/frame_dialog.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QListWidget>

#include "widgets/owned.h"

namespace velto {
namespace {

constexpr int kIconSize = 64;

const QStringList kThanks = {
    "The makers of ePSXe",
    "The authors of the PSEmu Pro plug-ins",
    "The authors of ePSXeCutor and Batard",
    "The Qt project",
    "The authors of SQLite and SQLiteCpp",
    "Everybody who reported what went wrong",
};

}  // namespace

CExitDialog::CExitDialog(QWidget* parent)
    : FormDialog("Exit Velto?", parent),
      dont_ask_(MakeOwned<QCheckBox>("&Do not ask this question in the future.")) {
    contents().addWidget(MakeLabel(
        "Closing Velto will prevent it from autoplaying psx cds.  Do you wish to continue?", true));
    contents().addWidget(dont_ask_);
    AddOkButton();
}

void CExitDialog::accept() {
    dontAskAgain = dont_ask_->isChecked();
    FormDialog::accept();
}

CAboutDlg::CAboutDlg(QWidget* parent) : FormDialog("About Velto", parent) {
    auto* const line = MakeOwned<QHBoxLayout>();
    contents().addLayout(line);
    auto* const icon = MakeOwned<QLabel>();
    icon->setPixmap(QIcon(":/icons/velto.svg").pixmap({kIconSize, kIconSize}, devicePixelRatioF()));
    icon->setAccessibleName("Velto");
    line->addWidget(icon);
    line->addWidget(MakeLabel("Velto Version 1.67.160"), 1);

    auto* const thanks = MakeOwned<QListWidget>();
    thanks->addItems(kThanks);
    thanks->setAccessibleName("Thanks to");
    thanks->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    AddGroup(contents(), "&Thanks to")->addRow(thanks);
    AddOkButton(false);
}

}  // namespace velto
