#include "overlay/OverlayFont.h"

#include "image/Percent.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr double PixelsPerPoint = 96.0 / 72.0;
constexpr int MaxFamilies = 16;
constexpr int MaxNameLength = 256;
constexpr int MaxWeight = 99;
constexpr int MaxStretch = 4000;
constexpr double MaxSpacing = 5.0; ///< of the font's size

QString Name(const QString& stored) { return stored.left(MaxNameLength); }

void TakeFamilies(QFont& font, const QFont& stored)
{
    font.setFamily(Name(stored.family()));
    QStringList families;
    const QStringList all = stored.families().mid(0, MaxFamilies);
    for (const QString& family : all)
        families.append(Name(family));
    if (!families.isEmpty())
        font.setFamilies(families);
    font.setStyleName(Name(stored.styleName()));
}

void TakeSpacing(QFont& font, const QFont& stored, int pixels)
{
    const double most = MaxSpacing * pixels;
    const double spacing = stored.letterSpacing();
    if (stored.letterSpacingType() == QFont::AbsoluteSpacing)
        font.setLetterSpacing(QFont::AbsoluteSpacing, std::clamp(spacing, -most, most));
    else if (spacing > 0.0)
        font.setLetterSpacing(QFont::PercentageSpacing, std::min(spacing, MaxSpacing * FullPercent));
    font.setWordSpacing(std::clamp(stored.wordSpacing(), -most, most));
}

} // namespace

int OverlayFont::PixelSize(const QFont& font)
{
    if (font.pixelSize() > 0)
        return std::min(font.pixelSize(), MaxPixels);
    const double pixels = font.pointSizeF() * PixelsPerPoint;
    if (!(pixels > 0.0))
        return 0;
    return std::max(qRound(std::min(pixels, double(MaxPixels))), 1);
}

QFont OverlayFont::Typeface(const QFont& stored, int pixels)
{
    QFont font;
    TakeFamilies(font, stored);
    font.setPixelSize(pixels);
    font.setWeight(std::min(stored.weight(), MaxWeight));
    font.setItalic(stored.style() == QFont::StyleItalic);
    if (stored.style() == QFont::StyleOblique)
        font.setStyle(QFont::StyleOblique);
    font.setStretch(std::min(stored.stretch(), MaxStretch));
    const int capitals = stored.capitalization();
    if (capitals >= QFont::MixedCase && capitals <= QFont::Capitalize)
        font.setCapitalization(QFont::Capitalization(capitals));
    const int hint = stored.styleHint();
    if (hint >= QFont::Helvetica && hint <= QFont::Fantasy)
        font.setStyleHint(QFont::StyleHint(hint));
    font.setFixedPitch(stored.fixedPitch());
    font.setKerning(stored.kerning());
    TakeSpacing(font, stored, pixels);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}
