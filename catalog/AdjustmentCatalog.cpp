#include "catalog/AdjustmentCatalog.h"

#include "KVFillColorWidget.h"
#include "KVSelectiveColorsWidget.h"
#include "YDBlackAndWhiteWidget.h"
#include "YDBrightnessContrastWidget.h"
#include "YDColorBalanceWidget.h"
#include "YDColorEnhancerWidget.h"
#include "YDColorizeWidget.h"
#include "YDCurvesWidget.h"
#include "YDExposureWidget.h"
#include "YDGammaCorrectionWidget.h"
#include "YDHueSaturationWidget.h"
#include "YDLevelsWidget.h"
#include "YDPhotoFilterWidget.h"
#include "YDPosterizeWidget.h"
#include "YDReplaceColorWidget.h"
#include "YDSignWidget.h"
#include "YDTemperatureWidget.h"
#include "YDThresholdWidget.h"
#include "YDTintWidget.h"
#include "YDWBWidget.h"
#include "YDWatermarkWidget.h"
#include "catalog/PanelDialog.h"
#include "operations/SettingsOf.h"

#include <algorithm>

namespace {

using operations::Settings;
using operations::SettingsOf;

// What a widget shows and holds, by way of its own setters and getters.

template <class Widget, class Value>
void Show(Widget& widget, const Value& value)
{
    widget.SetValue(value);
}

template <class Widget, class Value>
void Take(const Widget& widget, Value& value)
{
    value = widget.GetValue();
}

void Show(YDExposureWidget& widget, const operations::Exposure& value)
{
    widget.SetExposure(value.exposure);
    // Each time the slider, which truncates, has the last word if it moves; the second time it stays.
    widget.SetOffset(value.offset);
    widget.SetOffset(value.offset);
}

void Take(const YDExposureWidget& widget, operations::Exposure& value)
{
    value = {widget.GetExposure(), widget.GetOffset()};
}

void Show(YDGammaCorrectionWidget& widget, const operations::Gamma& value) { widget.SetGamma(value.gamma); }

void Take(const YDGammaCorrectionWidget& widget, operations::Gamma& value) { value = {widget.GetGamma()}; }

void Show(YDPosterizeWidget& widget, const operations::Posterize& value)
{
    widget.SetPosterize(value.levels);
}

void Take(const YDPosterizeWidget& widget, operations::Posterize& value) { value = {widget.GetPosterize()}; }

void Show(KVSelectiveColorsWidget& widget, const operations::SelectiveColors& value)
{
    widget.SetValue(value.List());
}

void Take(const KVSelectiveColorsWidget& widget, operations::SelectiveColors& value)
{
    value = operations::SelectiveColors(widget.GetValue());
}

template <class Widget>
std::unique_ptr<YDTaskWidget> MakeWidget(bool isDialog, QWidget* parent)
{
    return std::make_unique<Widget>(isDialog, parent, Qt::WindowFlags());
}

template <class Widget, class Value>
void ShowSettings(YDTaskWidget& widget, const Settings& settings)
{
    Show(static_cast<Widget&>(widget), static_cast<const SettingsOf<Value>&>(settings).value);
}

template <class Widget, class Value>
void TakeSettings(const YDTaskWidget& widget, Settings& settings)
{
    Take(static_cast<const Widget&>(widget), static_cast<SettingsOf<Value>&>(settings).value);
}

/// What the table of adjustments says of `name`, which is in it.
const operations::Adjustment& Known(const char* name)
{
    const operations::Adjustment* const adjustment = operations::Catalog::Find(QString::fromLatin1(name));
    Q_ASSERT(adjustment);
    return *adjustment;
}

template <class Widget, class Value>
AdjustmentEntry Entry(const char* name)
{
    return {Known(name), MakeWidget<Widget>, ShowSettings<Widget, Value>, TakeSettings<Widget, Value>};
}

// Adjustments whose widgets are panels only get a frame as dialogs.

template <class Widget>
std::unique_ptr<YDTaskWidget> MakePanel(bool isDialog, QWidget* parent)
{
    if (!isDialog)
        return std::make_unique<Widget>(parent, Qt::WindowFlags());
    return std::make_unique<PanelDialog>(std::make_unique<Widget>(nullptr, Qt::WindowFlags()), parent);
}

template <class Widget>
void ShowInPanel(YDTaskWidget& widget, const Settings& settings)
{
    using Value = typename Widget::Params;
    ShowSettings<Widget, Value>(PanelDialog::PanelOf(widget), settings);
}

template <class Widget>
void TakeFromPanel(const YDTaskWidget& widget, Settings& settings)
{
    using Value = typename Widget::Params;
    TakeSettings<Widget, Value>(PanelDialog::PanelOf(widget), settings);
}

template <class Widget>
AdjustmentEntry PanelEntry(const char* name)
{
    return {Known(name), MakePanel<Widget>, ShowInPanel<Widget>, TakeFromPanel<Widget>};
}

std::vector<AdjustmentEntry> MakeEntries()
{
    return {
        Entry<YDBrightnessContrastWidget, operations::BrightnessContrast>("brightness-contrast"),
        Entry<YDExposureWidget, operations::Exposure>("exposure"),
        Entry<YDGammaCorrectionWidget, operations::Gamma>("gamma"),
        Entry<YDPosterizeWidget, operations::Posterize>("posterize"),
        Entry<YDLevelsWidget, operations::Levels>("levels"),
        Entry<YDCurvesWidget, operations::Curves>("curves"),
        Entry<YDThresholdWidget, operations::Threshold>("threshold"),
        Entry<YDHueSaturationWidget, operations::HueSaturation>("hue-saturation"),
        Entry<YDColorBalanceWidget, operations::ColorBalance>("color-balance"),
        Entry<YDBlackAndWhiteWidget, operations::BlackAndWhite>("black-and-white"),
        Entry<YDColorizeWidget, operations::Colorize>("colorize"),
        Entry<YDPhotoFilterWidget, operations::PhotoFilter>("photo-filter"),
        Entry<YDTintWidget, operations::Tint>("tint"),
        Entry<YDTemperatureWidget, operations::Temperature>("temperature"),
        Entry<YDWBWidget, operations::WhiteBalance>("white-balance"),
        Entry<YDColorEnhancerWidget, operations::ColorEnhancer>("color-enhancer"),
        Entry<YDReplaceColorWidget, operations::ReplaceColor>("replace-color"),
        Entry<KVFillColorWidget, operations::FillColor>("fill-color"),
        Entry<KVSelectiveColorsWidget, operations::SelectiveColors>("selective-colors"),
        PanelEntry<YDSignWidget>("sign"),
        PanelEntry<YDWatermarkWidget>("watermark"),
    };
}

} // namespace

const std::vector<AdjustmentEntry>& AdjustmentCatalog::Entries()
{
    static const std::vector<AdjustmentEntry> entries = MakeEntries();
    return entries;
}

const AdjustmentEntry* AdjustmentCatalog::Find(const QString& name)
{
    const auto& entries = Entries();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&name](const AdjustmentEntry& entry) { return entry.name == name; });
    return found == entries.end() ? nullptr : &*found;
}

const AdjustmentEntry* AdjustmentCatalog::FindByPreset(const QByteArray& preset)
{
    const operations::Adjustment* const adjustment = operations::Catalog::FindByPreset(preset);
    return adjustment ? Find(adjustment->name) : nullptr;
}
