#include "operations/Catalog.h"

#include "operations/BlackAndWhite.h"
#include "operations/BrightnessContrast.h"
#include "operations/ColorBalance.h"
#include "operations/ColorEnhancer.h"
#include "operations/Colorize.h"
#include "operations/Curves.h"
#include "operations/Exposure.h"
#include "operations/FillColor.h"
#include "operations/Gamma.h"
#include "operations/HueSaturation.h"
#include "operations/Levels.h"
#include "operations/PhotoFilter.h"
#include "operations/Posterize.h"
#include "operations/ReplaceColor.h"
#include "operations/SelectiveColors.h"
#include "operations/SettingsOf.h"
#include "operations/Sign.h"
#include "operations/Temperature.h"
#include "operations/Threshold.h"
#include "operations/Tint.h"
#include "operations/Watermark.h"
#include "operations/WhiteBalance.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

using namespace operations;

template <class Value>
std::unique_ptr<Settings> MakeSettings()
{
    return std::make_unique<SettingsOf<Value>>();
}

template <class Value>
Adjustment Entry(Group group, const char* name, const char* title)
{
    return {QString::fromLatin1(name), title, group, MakeSettings<Value>};
}

std::vector<Adjustment> MakeAll()
{
    return {
        Entry<BrightnessContrast>(Group::Tone, "brightness-contrast",
                                  QT_TRANSLATE_NOOP("AdjustmentCatalog", "Brightness and Contrast")),
        Entry<Exposure>(Group::Tone, "exposure", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Exposure")),
        Entry<Gamma>(Group::Tone, "gamma", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Gamma")),
        Entry<Posterize>(Group::Tone, "posterize", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Posterize")),
        Entry<Levels>(Group::Tone, "levels", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Levels")),
        Entry<Curves>(Group::Tone, "curves", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Curves")),
        Entry<Threshold>(Group::Tone, "threshold", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Threshold")),
        Entry<HueSaturation>(Group::Color, "hue-saturation",
                             QT_TRANSLATE_NOOP("AdjustmentCatalog", "Hue and Saturation")),
        Entry<ColorBalance>(Group::Color, "color-balance",
                            QT_TRANSLATE_NOOP("AdjustmentCatalog", "Color Balance")),
        Entry<BlackAndWhite>(Group::Color, "black-and-white",
                             QT_TRANSLATE_NOOP("AdjustmentCatalog", "Black and White")),
        Entry<Colorize>(Group::Color, "colorize", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Colorize")),
        Entry<PhotoFilter>(Group::Color, "photo-filter",
                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Photo Filter")),
        Entry<Tint>(Group::Color, "tint", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Tint")),
        Entry<Temperature>(Group::Color, "temperature",
                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Temperature")),
        Entry<WhiteBalance>(Group::Color, "white-balance",
                            QT_TRANSLATE_NOOP("AdjustmentCatalog", "White Balance")),
        Entry<ColorEnhancer>(Group::Color, "color-enhancer",
                             QT_TRANSLATE_NOOP("AdjustmentCatalog", "Color Enhancer")),
        Entry<ReplaceColor>(Group::Fill, "replace-color",
                            QT_TRANSLATE_NOOP("AdjustmentCatalog", "Replace Color")),
        Entry<FillColor>(Group::Fill, "fill-color", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Fill Color")),
        Entry<SelectiveColors>(Group::Fill, "selective-colors",
                               QT_TRANSLATE_NOOP("AdjustmentCatalog", "Selective Colors")),
        Entry<Sign>(Group::Overlay, "sign", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Sign")),
        Entry<Watermark>(Group::Overlay, "watermark", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Watermark")),
    };
}

} // namespace

QString Adjustment::Title() const { return QCoreApplication::translate("AdjustmentCatalog", title); }

const std::vector<Adjustment>& Catalog::All()
{
    static const std::vector<Adjustment> all = MakeAll();
    return all;
}

QString Catalog::Title(Group group)
{
    switch (group) {
    case Group::Tone:
        return QCoreApplication::translate("AdjustmentCatalog", "Tone");
    case Group::Color:
        return QCoreApplication::translate("AdjustmentCatalog", "Color");
    case Group::Fill:
        return QCoreApplication::translate("AdjustmentCatalog", "Fill");
    case Group::Overlay:
        break;
    }
    return QCoreApplication::translate("AdjustmentCatalog", "Overlay");
}

const Adjustment* Catalog::Find(const QString& name)
{
    const auto& all = All();
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const Adjustment& each) { return each.name == name; });
    return found == all.end() ? nullptr : &*found;
}

const Adjustment* Catalog::FindByPreset(const QByteArray& preset)
{
    const auto& all = All();
    const auto found = std::find_if(all.begin(), all.end(), [&preset](const Adjustment& each) {
        return each.makeSettings()->IsTagOf(preset);
    });
    return found == all.end() ? nullptr : &*found;
}
