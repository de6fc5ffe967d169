#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Settings.h"

#include <QString>

#include <memory>
#include <vector>

namespace operations {

/// What an adjustment changes, for lists that people read.
enum class Group
{
    Tone,
    Color,
    Fill,
    Overlay,
};

/// One adjustment: how it is called, and how its settings are made.
struct ADJUSTMENTGUI_OPERATIONS_EXPORT Adjustment
{
    QString name;      ///< on the command line, in recipes and preset folders, such as "brightness-contrast"
    const char* title; ///< untranslated; Title() is for people
    Group group;

    /// The default settings.
    std::unique_ptr<Settings> (*makeSettings)();

    /// The title in the user's language.
    QString Title() const;
};

/// The one table of all adjustments, in the order of a menu, a group after the other.
namespace Catalog {

ADJUSTMENTGUI_OPERATIONS_EXPORT const std::vector<Adjustment>& All();

/// The group's title in the user's language.
ADJUSTMENTGUI_OPERATIONS_EXPORT QString Title(Group group);

/// The adjustment called `name`; null if there is none.
ADJUSTMENTGUI_OPERATIONS_EXPORT const Adjustment* Find(const QString& name);

/// The adjustment whose presets begin as `preset` does; null if there is none.
ADJUSTMENTGUI_OPERATIONS_EXPORT const Adjustment* FindByPreset(const QByteArray& preset);

} // namespace Catalog

} // namespace operations
