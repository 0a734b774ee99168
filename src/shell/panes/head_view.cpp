#include "shell/panes/head_view.h"

#include "widgets/text.h"

namespace velto {
namespace {

QString Count(std::size_t configurations) {
    if (configurations == 0) return "There is no configuration in this group.";
    if (configurations == 1) return "There is one configuration in this group.";
    return QString("There are %1 configurations in this group.").arg(configurations);
}

}  // namespace

CHeadView::CHeadView(QWidget* parent) : FormPage({}, parent), contents_line_(MakeLabel({}, true)) {
    contents().addWidget(contents_line_);
}

void CHeadView::Refresh(const std::string& group, std::size_t configurations) {
    SetHeading(FromBytes(group));
    contents_line_->setText(Count(configurations));
}

}  // namespace velto
