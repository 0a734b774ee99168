// A page of the editor: a heading and contents below it.
//
// It is made once, with the editor, and shown again and again: each time for the record as it is
// then. The contents never get less room than they need; a page that is too small for them
// scrolls, by the keyboard too.
#pragma once

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace velto {

class Page : public QScrollArea {
  public:
    explicit Page(const QString& heading = {}, QWidget* parent = nullptr);

    // Takes what it shows from the record: in front of each Shown(), and when the record has
    // changed behind the page that is shown.
    virtual void Refresh() {}
    // The user sees it from now on, and not any more. Another configuration's same page is a page
    // hidden and shown.
    virtual void Shown() {}
    virtual void Hidden() {}

    void SetHeading(const QString& heading);

    // Short contents have all their height; long ones are for scrolling.
    QSize minimumSizeHint() const override;

  protected:
    QVBoxLayout& contents() { return *contents_; }

  private:
    QLabel* heading_;
    QVBoxLayout* contents_;
};

}  // namespace velto
