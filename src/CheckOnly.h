#pragma once

#include <vector>

class QAbstractButton;

/// Checks the button at `index` of `buttons`, which exclude one another by a common parent, or none of them
/// where there is no such index.
void CheckOnly(const std::vector<QAbstractButton*>& buttons, int index);
