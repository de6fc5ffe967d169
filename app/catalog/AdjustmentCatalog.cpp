#include "catalog/AdjustmentCatalog.h"

#include "KVFillColorWidget.h"
#include "KVSelectiveColorsWidget.h"
#include "YDBlackAndWhiteWidget.h"
#include "YDBrightnessContrastWidget.h"
#include "YDColorBalanceWidget.h"
#include "YDColorEnhancerWidget.h"
#include "YDColorizeWidget.h"
#include "YDCurvesWidget.h"
#include "YDHueSaturationWidget.h"
#include "YDLevelsWidget.h"
#include "YDPhotoFilterWidget.h"
#include "YDReplaceColorWidget.h"
#include "YDSignWidget.h"
#include "YDTemperatureWidget.h"
#include "YDThresholdWidget.h"
#include "YDTintWidget.h"
#include "YDWBWidget.h"
#include "YDWatermarkWidget.h"
#include "catalog/ApplyThroughDialog.h"
#include "catalog/ExposureFields.h"
#include "catalog/GammaFields.h"
#include "catalog/OverlayDrawings.h"
#include "catalog/PosterizeFields.h"
#include "catalog/RecordSettings.h"
#include "catalog/SelectiveColorsFields.h"
#include "catalog/StreamlessSettings.h"
#include "gpu/KVGpuService.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

template <class Widget>
std::unique_ptr<YDAdjustmentWidget> MakeWidget(bool isDialog, QWidget* parent)
{
    return std::make_unique<Widget>(isDialog, parent, Qt::WindowFlags());
}

template <class Settings>
std::unique_ptr<AdjustmentSettings> MakeSettings()
{
    return std::make_unique<Settings>();
}

QString Convert(YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
                const QPoint& offset, const QRect& boundingRect)
{
    panel.SetImage(image, selection, offset, boundingRect);
    panel.ConvertImage(image, selection, offset, boundingRect);
    // No event loop turned meanwhile, so no count of the image began that the caller would have to wait for
    // before it writes to it again; now none will.
    panel.SetImage({}, {}, {}, {});
    return {};
}

/// What a dialog with the panel's settings makes of the picture.
template <class Widget, class Params = typename Widget::Params>
QString TakePreview(YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
                    const QPoint& offset, const QRect& boundingRect)
{
    RecordSettings<Widget, Params> settings;
    settings.TakeFrom(panel);
    const auto dialog = MakeWidget<Widget>(true, nullptr);
    settings.ShowIn(*dialog);
    return ApplyThroughDialog(*dialog, image, selection, offset, boundingRect);
}

/// An adjustment whose widget keeps a record and converts pictures.
template <class Widget, class Params = typename Widget::Params>
AdjustmentEntry RecordEntry(const char* name, const char* title)
{
    return {QString::fromLatin1(name), title, MakeWidget<Widget>,
            MakeSettings<RecordSettings<Widget, Params>>, Convert};
}

/// An adjustment whose widget keeps a record, and changes pixels in the preview of its dialog alone.
template <class Widget>
AdjustmentEntry PreviewEntry(const char* name, const char* title)
{
    AdjustmentEntry entry = RecordEntry<Widget>(name, title);
    entry.apply = TakePreview<Widget>;
    return entry;
}

template <class Widget>
std::unique_ptr<YDAdjustmentWidget> MakePanel(bool, QWidget* parent)
{
    return std::make_unique<Widget>(parent, Qt::WindowFlags());
}

template <AdjustmentEntry::Drawing (*MakeDrawing)(const YDAdjustmentWidget&)>
QString Draw(YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
             const QPoint& offset, const QRect& boundingRect)
{
    return MakeDrawing(panel)(image, selection, offset, boundingRect);
}

/// An adjustment whose widget is a panel only and keeps a record, which the host draws.
template <class Widget, AdjustmentEntry::Drawing (*MakeDrawing)(const YDAdjustmentWidget&)>
AdjustmentEntry OverlayEntry(const char* name, const char* title)
{
    return {QString::fromLatin1(name), title,      MakePanel<Widget>, MakeSettings<RecordSettings<Widget>>,
            Draw<MakeDrawing>,         MakeDrawing};
}

/// An adjustment whose widget keeps its values in the controls, as `Fields` lists them, and converts
/// pictures.
template <class Widget, class Fields>
AdjustmentEntry StreamlessEntry(const char* name, const char* title)
{
    return {QString::fromLatin1(name), title, MakeWidget<Widget>,
            MakeSettings<StreamlessSettings<Widget, Fields>>, Convert};
}

/// The selective colours are the same either way, but only previews are computed by the GPU service.
QString ApplySelectiveColors(YDAdjustmentWidget& panel, RGBA32iImage& image, const RGBA32iImage& selection,
                             const QPoint& offset, const QRect& boundingRect)
{
    const auto apply =
        KVGpuService::get_instance() ? TakePreview<KVSelectiveColorsWidget, SelectiveColorsFields> : Convert;
    return apply(panel, image, selection, offset, boundingRect);
}

AdjustmentEntry SelectiveColorsEntry()
{
    auto entry = RecordEntry<KVSelectiveColorsWidget, SelectiveColorsFields>(
        "selective-colors", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Selective Colors"));
    entry.apply = ApplySelectiveColors;
    return entry;
}

std::vector<AdjustmentEntry> ToneEntries()
{
    return {
        RecordEntry<YDBrightnessContrastWidget>(
            "brightness-contrast", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Brightness and Contrast")),
        StreamlessEntry<YDExposureWidget, ExposureFields>("exposure",
                                                          QT_TRANSLATE_NOOP("AdjustmentCatalog", "Exposure")),
        StreamlessEntry<YDGammaCorrectionWidget, GammaFields>(
            "gamma", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Gamma")),
        StreamlessEntry<YDPosterizeWidget, PosterizeFields>(
            "posterize", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Posterize")),
        RecordEntry<YDLevelsWidget>("levels", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Levels")),
        RecordEntry<YDCurvesWidget>("curves", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Curves")),
        RecordEntry<YDThresholdWidget>("threshold", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Threshold")),
    };
}

std::vector<AdjustmentEntry> ColorEntries()
{
    return {
        RecordEntry<YDHueSaturationWidget>("hue-saturation",
                                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Hue and Saturation")),
        RecordEntry<YDColorBalanceWidget>("color-balance",
                                          QT_TRANSLATE_NOOP("AdjustmentCatalog", "Color Balance")),
        RecordEntry<YDBlackAndWhiteWidget>("black-and-white",
                                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Black and White")),
        RecordEntry<YDColorizeWidget>("colorize", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Colorize")),
        RecordEntry<YDPhotoFilterWidget>("photo-filter",
                                         QT_TRANSLATE_NOOP("AdjustmentCatalog", "Photo Filter")),
        RecordEntry<YDTintWidget>("tint", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Tint")),
        RecordEntry<YDTemperatureWidget>("temperature",
                                         QT_TRANSLATE_NOOP("AdjustmentCatalog", "Temperature")),
        RecordEntry<YDWBWidget>("white-balance", QT_TRANSLATE_NOOP("AdjustmentCatalog", "White Balance")),
        RecordEntry<YDColorEnhancerWidget>("color-enhancer",
                                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Color Enhancer")),
    };
}

std::vector<AdjustmentEntry> FillEntries()
{
    return {
        PreviewEntry<YDReplaceColorWidget>("replace-color",
                                           QT_TRANSLATE_NOOP("AdjustmentCatalog", "Replace Color")),
        PreviewEntry<KVFillColorWidget>("fill-color", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Fill Color")),
        SelectiveColorsEntry(),
    };
}

std::vector<AdjustmentEntry> OverlayEntries()
{
    AdjustmentEntry sign = OverlayEntry<YDSignWidget, OverlayDrawings::OfSign>(
        "sign", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Sign"));
    sign.whatIsMissing = OverlayDrawings::WhatSignLacks;
    return {
        sign,
        OverlayEntry<YDWatermarkWidget, OverlayDrawings::OfWatermark>(
            "watermark", QT_TRANSLATE_NOOP("AdjustmentCatalog", "Watermark")),
    };
}

std::vector<AdjustmentEntry> MakeEntries()
{
    std::vector<AdjustmentEntry> all;
    const auto append = [&all](AdjustmentGroup group, const std::vector<AdjustmentEntry>& entries) {
        for (AdjustmentEntry entry : entries) {
            entry.group = group;
            all.push_back(entry);
        }
    };
    append(AdjustmentGroup::Tone, ToneEntries());
    append(AdjustmentGroup::Color, ColorEntries());
    append(AdjustmentGroup::Fill, FillEntries());
    append(AdjustmentGroup::Overlay, OverlayEntries());
    return all;
}

} // namespace

QString AdjustmentEntry::Title() const { return QCoreApplication::translate("AdjustmentCatalog", title); }

const std::vector<AdjustmentEntry>& AdjustmentCatalog::Entries()
{
    static const std::vector<AdjustmentEntry> entries = MakeEntries();
    return entries;
}

QString AdjustmentCatalog::Title(AdjustmentGroup group)
{
    switch (group) {
    case AdjustmentGroup::Tone:
        return QCoreApplication::translate("AdjustmentCatalog", "Tone");
    case AdjustmentGroup::Color:
        return QCoreApplication::translate("AdjustmentCatalog", "Color");
    case AdjustmentGroup::Fill:
        return QCoreApplication::translate("AdjustmentCatalog", "Fill");
    case AdjustmentGroup::Overlay:
        break;
    }
    return QCoreApplication::translate("AdjustmentCatalog", "Overlay");
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
    const auto& entries = Entries();
    const auto found = std::find_if(entries.begin(), entries.end(), [&preset](const AdjustmentEntry& entry) {
        return entry.makeSettings()->IsTagOf(preset);
    });
    return found == entries.end() ? nullptr : &*found;
}
