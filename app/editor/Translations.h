#pragma once

/// The user's language, where the program's texts are translated to it.
namespace Translations {

/// Installs the translations that lie in ../share/adjustmentgui/translations beside the program's folder,
/// and Qt's own with them. Without a translation of the program everything stays English. Call it once the
/// application object exists.
void Install();

} // namespace Translations
