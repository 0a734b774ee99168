// The pages that show no field of the record: for the root of the tree, for a group, and in place
// of what isn't there yet.
#pragma once

#include "shell/panes/panes.h"
#include "widgets/page.h"

namespace velto {

// The welcome page: a greeting and, for who has just begun, the next step with the button that
// does it.
class CInitalView : public Page {
  public:
    explicit CInitalView(const PageServices& services);

    void Refresh() override;

    // At any size of the letters a first step can be read without a scroll.
    QSize minimumSizeHint() const override;

  private:
    PageServices services_;
    QWidget* paths_step_;
    QWidget* configuration_step_;
};

// The page of a group says what it holds.
class CHeadView : public Page {
  public:
    explicit CHeadView(const PageServices& services);

    void Refresh() override;

  private:
    PageServices services_;
    QLabel* contents_line_;
};

// A page of a configuration that has no controls yet says what they will be for.
class PlaceholderView : public Page {
  public:
    explicit PlaceholderView(const QString& line);
};

}  // namespace velto
