// A page of a configuration that has no controls yet: it says what they will be for.
#pragma once

#include <cstddef>

#include "widgets/form.h"

namespace velto {

class PlaceholderView : public FormPage {
  public:
    // `page` is an index of kPageNames.
    explicit PlaceholderView(std::size_t page, QWidget* parent = nullptr);
};

}  // namespace velto
