#include "YDBlendingModes.h"

#include <QComboBox>
#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

struct BlendingMode
{
    const char* text;
    KVCompositionMode mode;
};

constexpr std::array<BlendingMode, 13> Modes{{
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Normal"), KVCompositionMode::Normal},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Multiply"), KVCompositionMode::Multiply},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Screen"), KVCompositionMode::Screen},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Overlay"), KVCompositionMode::Overlay},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Difference"), KVCompositionMode::Difference},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Exclusion"), KVCompositionMode::Exclusion},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Lighten colors"), KVCompositionMode::Lighten},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Darken colors"), KVCompositionMode::Darken},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Soft light"), KVCompositionMode::SoftLight},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Hard light"), KVCompositionMode::HardLight},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Color dodge"), KVCompositionMode::ColorDodge},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Color burn"), KVCompositionMode::ColorBurn},
    {QT_TRANSLATE_NOOP("YDBlendingModes", "Addition"), KVCompositionMode::Addition},
}};

} // namespace

void FillBlendingModes(QComboBox& box)
{
    for (const BlendingMode& each : Modes)
        box.addItem(QCoreApplication::translate("YDBlendingModes", each.text));
}

KVCompositionMode BlendingModeAt(int index)
{
    const bool isThere = index >= 0 && std::size_t(index) < Modes.size();
    return isThere ? Modes[std::size_t(index)].mode : KVCompositionMode::Normal;
}

int BlendingIndexOf(unsigned mode)
{
    const auto found = std::find_if(Modes.begin(), Modes.end(),
                                    [mode](const BlendingMode& each) { return unsigned(each.mode) == mode; });
    return found == Modes.end() ? 0 : int(found - Modes.begin());
}
