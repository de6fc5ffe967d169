#include "CheckOnly.h"

#include <QAbstractButton>

void CheckOnly(const std::vector<QAbstractButton*>& buttons, int index)
{
    if (index >= 0 && index < int(buttons.size())) {
        buttons[std::size_t(index)]->setChecked(true);
        return;
    }
    for (QAbstractButton* const button : buttons)
        if (button->isChecked()) {
            button->setAutoExclusive(false); // the checked one of exclusive buttons cannot be unchecked
            button->setChecked(false);
            button->setAutoExclusive(true);
        }
}
