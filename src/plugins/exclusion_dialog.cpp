#include "plugins/exclusion_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>

#include "platform/message_box.h"
#include "widgets/owned.h"

namespace velto {
namespace {

void Tell(const char* text, const char* caption = "Velto") {
    platform::Report(text, caption, platform::BoxIcon::Information);
}

}  // namespace

CExclusionDlg::CExclusionDlg(QWidget* parent)
    : FormDialog("Exclusion List", parent),
      entries_(MakeOwned<BytesList>()),
      file_name_(MakeOwned<BytesEdit>()) {
    auto* const title =
        MakeLabel("The following files will be &ignored by Velto's plugin scanner:", true);
    title->setBuddy(entries_);
    entries_->setAccessibleName(title->text().remove('&'));
    auto* const file_label = MakeLabel("&Filename:");
    file_label->setBuddy(file_name_);
    auto* const remove = MakeButton("&Remove");
    auto* const add = MakeButton("&Add");
    auto* const close = MakeButton("&Close");
    add->setDefault(true);

    auto* const grid = MakeOwned<QGridLayout>();
    contents().addLayout(grid);
    grid->addWidget(title, 0, 0, 1, 3);
    grid->addWidget(entries_, 1, 0, 1, 2);
    grid->addWidget(remove, 1, 2, Qt::AlignTop);
    grid->addWidget(file_label, 2, 0);
    grid->addWidget(file_name_, 2, 1);
    grid->addWidget(add, 2, 2);
    grid->addWidget(close, 3, 2);

    for (const auto& entry : settings_.GetExclusionList()) entries_->Add(entry);
    connect(remove, &QPushButton::clicked, this, [this] { Remove(); });
    connect(add, &QPushButton::clicked, this, [this] { Add(); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
}

void CExclusionDlg::Add() {
    const auto name = file_name_->bytes();
    auto list = entries_->entries();
    if (name.empty()) return Tell("Please specify a file to exclude");
    if (std::find(list.begin(), list.end(), name) != list.end()) return Tell("Already excluded.");
    list.push_back(name);
    settings_.SetExclusionList(list);
    entries_->Add(name);
}

void CExclusionDlg::Remove() {
    if (!entries_->HasSelection()) return Tell("No item Selected");
    entries_->RemoveSelected();
    settings_.SetExclusionList(entries_->entries());
}

void CExclusionDlg::reject() {
    Tell("Changes will only be applied after restarting.", "Restart");
    FormDialog::reject();
}

}  // namespace velto
