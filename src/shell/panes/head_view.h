// The page of a group: it has no controls, and says what the group holds.
#pragma once

#include <cstddef>
#include <string>

#include "widgets/form.h"

namespace velto {

class CHeadView : public FormPage {
  public:
    explicit CHeadView(QWidget* parent = nullptr);

    void Refresh(const std::string& group, std::size_t configurations);

  private:
    QLabel* contents_line_;
};

}  // namespace velto
