// A combo box that offers bytes, and gives the chosen ones back as they were.
#pragma once

#include <QComboBox>
#include <string>
#include <string_view>
#include <vector>

namespace velto {

class BytesCombo : public QComboBox {
  public:
    // As wide as a name of usual length; longer ones are cut by "...".
    explicit BytesCombo(QWidget* parent = nullptr);

    // Offers these entries, in the order of names without regard to case.
    void SetSorted(std::vector<std::string> entries);
    void Select(std::string_view entry);  // nothing changes if it isn't offered
    std::string bytes() const;            // empty if nothing is offered
};

}  // namespace velto
