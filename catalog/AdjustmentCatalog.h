#pragma once

#include "adjustmentgui_catalog_export.h"
#include "operations/Catalog.h"

#include <memory>
#include <vector>

class QWidget;
class YDTaskWidget;

/// One adjustment with a window: what the table of adjustments says of it, and how its widget is made.
struct AdjustmentEntry : operations::Adjustment
{
    /// A widget of the adjustment. As a dialog it has a frame with buttons and previews what it is given. A
    /// panel is the controls alone; whoever shows it applies its task.
    std::unique_ptr<YDTaskWidget> (*makeWidget)(bool isDialog, QWidget* parent);

    /// Shows settings of the adjustment in a widget of it, as its setters do: most announce no change.
    void (*show)(YDTaskWidget& widget, const operations::Settings& settings);

    /// Takes the settings that a widget of the adjustment holds.
    void (*take)(const YDTaskWidget& widget, operations::Settings& settings);

    /// The settings that a widget of the adjustment holds.
    std::unique_ptr<operations::Settings> SettingsOf(const YDTaskWidget& widget) const
    {
        auto settings = makeSettings();
        take(widget, *settings);
        return settings;
    }
};

/// The widgets' half of the one table of all adjustments, in its order. GUI thread.
namespace AdjustmentCatalog {

ADJUSTMENTGUI_CATALOG_EXPORT const std::vector<AdjustmentEntry>& Entries();

/// The adjustment called `name`; null if there is none.
ADJUSTMENTGUI_CATALOG_EXPORT const AdjustmentEntry* Find(const QString& name);

/// The adjustment whose presets begin as `preset` does; null if there is none.
ADJUSTMENTGUI_CATALOG_EXPORT const AdjustmentEntry* FindByPreset(const QByteArray& preset);

} // namespace AdjustmentCatalog
