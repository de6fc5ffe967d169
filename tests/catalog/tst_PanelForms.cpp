#include "PanelKit.h"
#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "gui/YDAngleSlider.h"

#include <QGridLayout>
#include <QLabel>
#include <QMetaEnum>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <vector>

namespace {

QString Quoted(const QString& text) { return QLatin1Char('\'') + text + QLatin1Char('\''); }

QString Size(const QSize& size) { return QStringLiteral("%1x%2").arg(size.width()).arg(size.height()); }

template <class Number>
QString RangeOf(Number minimum, Number maximum, Number value)
{
    return QStringLiteral("%1..%2 = %3").arg(minimum).arg(maximum).arg(value);
}

QString Described(const QLabel& label)
{
    const Qt::Alignment alignment = label.alignment();
    const QString side = QString::fromLatin1(alignment & Qt::AlignRight ? " right" : "") +
                         QString::fromLatin1(alignment & Qt::AlignVCenter ? "" : " not centred");
    return Quoted(label.text()) + side +
           (label.buddy() ? QStringLiteral(" for ") + label.buddy()->objectName() : QString());
}

QString Described(const QSlider& slider)
{
    QString text = RangeOf(slider.minimum(), slider.maximum(), slider.value()) +
                   QStringLiteral(" by %1, %2").arg(slider.singleStep()).arg(slider.pageStep());
    if (slider.sliderPosition() != slider.value() || slider.orientation() != Qt::Horizontal ||
        slider.invertedAppearance())
        text += QStringLiteral(" elsewhere, upright or inverted");
    if (slider.tickPosition() != QSlider::NoTicks || slider.tickInterval() != 0)
        text += QStringLiteral(" ticks %1 every %2").arg(slider.tickPosition()).arg(slider.tickInterval());
    return text;
}

template <class SpinBox>
QString DescribedSpinBox(const SpinBox& box)
{
    QString text =
        RangeOf(box.minimum(), box.maximum(), box.value()) + QStringLiteral(" by %1").arg(box.singleStep());
    if (!box.prefix().isEmpty() || !box.suffix().isEmpty())
        text += QLatin1Char(' ') + Quoted(box.prefix() + QStringLiteral("#") + box.suffix());
    if (box.alignment() & Qt::AlignRight)
        text += QStringLiteral(" right");
    if (box.buttonSymbols() != QAbstractSpinBox::UpDownArrows)
        text += QStringLiteral(" no arrows");
    return box.keyboardTracking() ? text : text + QStringLiteral(" not tracking");
}

QString Described(const QComboBox& box)
{
    QStringList items;
    for (int i = 0; i < box.count(); ++i)
        items.append(box.itemText(i));
    return Quoted(items.join(QLatin1Char('/'))) + QStringLiteral(" = %1").arg(box.currentIndex()) +
           (box.maxVisibleItems() == 10 ? QString()
                                        : QStringLiteral(" visible %1").arg(box.maxVisibleItems()));
}

QString Described(const QAbstractButton& button)
{
    QString text = Quoted(button.text());
    if (button.isCheckable())
        text += QString::fromLatin1(button.isChecked() ? " on" : " off");
    return button.icon().isNull() ? text : text + QStringLiteral(" with an icon");
}

QString Described(const QLineEdit& line)
{
    return Quoted(line.text()) + QString::fromLatin1(line.isReadOnly() ? " read-only" : "");
}

QString Described(const QGroupBox& box)
{
    const QString check = QString::fromLatin1(box.isChecked() ? " on" : " off");
    return Quoted(box.title()) + (box.isCheckable() ? check : QString());
}

QString Described(const YodiCustomSlider& slider)
{
    QString text = QStringLiteral("%1..%2").arg(slider.Minimum()).arg(slider.Maximum());
    for (uint i = 0; i < slider.ControlCount(); ++i)
        text += QStringLiteral(", %1 %2").arg(Quoted(slider.ControlName(i)), slider.Brush(i).color().name()) +
                QLatin1Char(' ') + RangeOf(slider.LowestValue(i), slider.HighestValue(i), slider.Value(i));
    return text;
}

/// What only a widget of its kind has.
QString DescribedByKind(const QWidget& widget)
{
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
        return Described(*label);
    if (const auto* const slider = qobject_cast<const QSlider*>(&widget))
        return Described(*slider);
    if (const auto* const whole = qobject_cast<const QSpinBox*>(&widget))
        return DescribedSpinBox(*whole);
    if (const auto* const fraction = qobject_cast<const QDoubleSpinBox*>(&widget))
        return DescribedSpinBox(*fraction) + QStringLiteral(" decimals %1").arg(fraction->decimals());
    if (const auto* const box = qobject_cast<const QComboBox*>(&widget))
        return Described(*box);
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget))
        return Described(*button);
    if (const auto* const line = qobject_cast<const QLineEdit*>(&widget))
        return Described(*line);
    if (const auto* const group = qobject_cast<const QGroupBox*>(&widget))
        return Described(*group);
    if (const auto* const handles = qobject_cast<const YodiCustomSlider*>(&widget))
        return Described(*handles);
    const auto* const dial = qobject_cast<const YDAngleSlider*>(&widget);
    return dial ? RangeOf(dial->minimum(), dial->maximum(), dial->value()) : QString();
}

/// A control in words: its kind, what it holds, and what is unusual about it.
QString Described(const QWidget& widget)
{
    QStringList words{QString::fromLatin1(widget.metaObject()->className()), DescribedByKind(widget)};
    if (!widget.toolTip().isEmpty())
        words.append(QStringLiteral("tip ") + Quoted(widget.toolTip()));
    if (!widget.minimumSize().isNull())
        words.append(QStringLiteral("min ") + Size(widget.minimumSize()));
    if (widget.maximumSize() != QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX))
        words.append(QStringLiteral("max ") + Size(widget.maximumSize()).replace("16777215", "any"));
    if (widget.sizePolicy().horizontalStretch() != 0)
        words.append(QStringLiteral("stretched"));
    if (!widget.isEnabled())
        words.append(QStringLiteral("disabled"));
    words.removeAll(QString());
    return words.join(QLatin1Char(' '));
}

/// Where `isIt` finds an item in a layout or one within it: its name and the cell, and how many cells; empty
/// if nowhere.
template <class Predicate>
QString PlaceIn(const QLayout& layout, Predicate&& isIt)
{
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem& item = *layout.itemAt(i);
        if (item.layout()) {
            const QString place = PlaceIn(*item.layout(), isIt);
            if (!place.isEmpty())
                return place;
        }
        if (!isIt(item))
            continue;
        const auto* const grid = qobject_cast<const QGridLayout*>(&layout);
        if (!grid)
            return QStringLiteral("%1 %2").arg(layout.objectName()).arg(i);
        int row = 0, column = 0, rows = 0, columns = 0;
        grid->getItemPosition(i, &row, &column, &rows, &columns);
        return QStringLiteral("%1 %2,%3").arg(layout.objectName()).arg(row).arg(column) +
               (rows * columns == 1 ? QString() : QStringLiteral(" %1x%2").arg(rows).arg(columns));
    }
    return {};
}

QString PlaceOf(const QWidget& widget)
{
    const QLayout* const layout = widget.parentWidget()->layout();
    return layout ? PlaceIn(*layout, [&widget](QLayoutItem& item) { return item.widget() == &widget; })
                  : QString();
}

/// The spacers of a panel, each by place, size and policies.
QStringList SpacersOf(const QWidget& panel)
{
    QStringList spacers;
    const auto layouts = panel.findChildren<QLayout*>();
    for (const QLayout* const layout : layouts)
        for (int i = 0; i < layout->count(); ++i) {
            QSpacerItem* const spacer = layout->itemAt(i)->spacerItem();
            if (!spacer || layout->objectName().isEmpty()) // of a group box
                continue;
            const QString place = PlaceIn(*layout, [spacer](QLayoutItem& item) { return &item == spacer; });
            const auto policy = QMetaEnum::fromType<QSizePolicy::Policy>();
            spacers.append(place + QLatin1Char(' ') + Size(spacer->sizeHint()) + QLatin1Char(' ') +
                           QLatin1String(policy.valueToKey(spacer->sizePolicy().horizontalPolicy())) +
                           QLatin1Char(' ') +
                           QLatin1String(policy.valueToKey(spacer->sizePolicy().verticalPolicy())));
        }
    return spacers;
}

/// The grids with more room than usual between their rows and above them.
QStringList AiryGrids(const QWidget& panel)
{
    QStringList airy;
    const auto grids = panel.findChildren<QGridLayout*>();
    for (const QGridLayout* const grid : grids)
        if (grid->verticalSpacing() == 9 && grid->contentsMargins().top() == 12)
            airy.append(grid->objectName());
    return airy;
}

/// The children that have a name in the form, in its order.
QList<const QWidget*> NamedChildren(const QWidget& panel)
{
    QList<const QWidget*> named;
    const auto children = panel.findChildren<QWidget*>();
    for (const QWidget* const child : children)
        if (!child->objectName().isEmpty() && !child->objectName().startsWith(QLatin1Char('q')))
            named.append(child);
    return named;
}

/// The children that Tab goes through, in order.
QStringList TabOrder(const QWidget& panel)
{
    QStringList order;
    for (const QWidget* next = panel.nextInFocusChain(); next != &panel; next = next->nextInFocusChain())
        if ((next->focusPolicy() & Qt::TabFocus) && !next->focusProxy() &&
            !next->objectName().startsWith(QLatin1Char('q')))
            order.append(next->objectName());
    return order;
}

/// The panels: a line with name, title, size, spacers and airy grids, and then one for each named child in
/// the order of Tab, with what it is and where.
constexpr char Designed[] = R"(
= brightness-contrast | Brightness and Contrast | 208x103 | gridLayout 2,0 1x3 188x24 Minimum Expanding | 
labelBrightness | QLabel 'Brightness:' right for m_pBrightnessSpin | gridLayout 0,0
m_pBrightnessSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout 0,1
m_pBrightnessSpin | KVSpinBox -127..127 = 0 by 1 | gridLayout 0,2
labelContrast | QLabel 'Contrast:' right for m_pContrastSpin | gridLayout 1,0
m_pContrastSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout 1,1
m_pContrastSpin | KVSpinBox -127..127 = 0 by 1 | gridLayout 1,2
= exposure | Exposure correction | 212x93 | gridLayout 2,0 1x3 0x0 Minimum Expanding | 
label | QLabel 'Exposure:' right for m_pExposureSpin | gridLayout 0,0
m_pExposureSlider | KVSlider -200000..200000 = 0 by 1000, 10000 | gridLayout 0,1
m_pExposureSpin | KVDoubleSpinBox -20..20 = 0 by 0.001 decimals 4 | gridLayout 0,2
label_2 | QLabel 'Offset:' right for m_pOffsetSpin | gridLayout 1,0
m_pOffsetSlider | KVSlider -5000..5000 = 0 by 10, 100 | gridLayout 1,1
m_pOffsetSpin | KVDoubleSpinBox -0.5..0.5 = 0 by 0.001 decimals 4 | gridLayout 1,2
= gamma | Gamma correction | 208x105 | gridLayout 1,0 1x3 168x25 Minimum Expanding | 
label | QLabel 'Gamma:' right for m_pGammaSpin | gridLayout 0,0
m_pGammaSlider | KVSlider 1..500 = 100 by 1, 10 | gridLayout 0,1
m_pGammaSpin | KVDoubleSpinBox 0.01..5 = 1 by 0.01 decimals 2 | gridLayout 0,2
= posterize | Posterize | 267x63 | gridLayout 1,0 1x3 120x16 Minimum Expanding | 
label | QLabel 'Posterize:' right for m_pPosterizeSpin | gridLayout 0,0
m_pPosterizeSlider | KVSlider 2..255 = 4 by 1, 10 | gridLayout 0,1
m_pPosterizeSpin | KVSpinBox 2..255 = 4 by 1 | gridLayout 0,2
= levels | Levels | 286x300 | channelLayout 2 0x0 Expanding Minimum;inputEndsLayout 1 0x0 Expanding Minimum;inputEndsLayout 3 0x0 Expanding Minimum;outputEndsLayout 1 0x0 Expanding Minimum | 
label | QLabel 'Channel:' for m_pChannel | channelLayout 0
m_pChannel | QComboBox 'RGB/Red/Green/Blue' = 0 tip 'Channel for input signal' | channelLayout 1
m_pAutoBtn | QPushButton 'Auto' disabled | channelLayout 3
m_pHistogramm | HistogramWidget | m_pHistogrammLayout 0
m_pInputLabel | YDColorWidget | inputLabelLayout 0
m_pInputSlider | YodiCustomSlider 0..255, 'Lowest input signal value' #000000 0..255 = 0, 'Middle signal input value' #a0a0a4 0..255 = 128, 'Highest signal input value' #ffffff 0..255 = 255 | inputScaleLayout 2
label_3 | QLabel 'Input' for m_pLowInput min 59x0 | inputLayout 0
inputEnds | QWidget | inputLayout 1
m_pLowInput | KVSpinBox 0..255 = 0 by 1 tip 'Lowest input signal value' | inputEndsLayout 0
m_pMiddleInput | KVDoubleSpinBox 0.01..9.99 = 1 by 0.01 decimals 2 tip 'Middle signal input value' | inputEndsLayout 2
m_pHighInput | KVSpinBox 0..255 = 255 by 1 tip 'Highest signal input value' | inputEndsLayout 4
m_pOutputLabel | YDColorWidget | outputLabelLayout 0
m_pOutputSlider | YodiCustomSlider 0..255, 'Lowest output value' #000000 0..255 = 0, 'Highest output value' #ffffff 0..255 = 255 | outputScaleLayout 1
label_2 | QLabel 'Output' for m_pLowOutput min 59x0 | outputLayout 0
outputEnds | QWidget | outputLayout 1
m_pLowOutput | KVSpinBox 0..255 = 0 by 1 tip 'Lowest output value' | outputEndsLayout 0
m_pHighOutput | KVSpinBox 0..255 = 255 by 1 tip 'Highest output value' | outputEndsLayout 2
= curves | Curves | 310x380 | m_pChannelLayout 2 8x20 Expanding Minimum;m_pPointLayout 5 8x20 Expanding Minimum | 
label | QLabel 'Channel:' for m_pChannel | m_pChannelLayout 0
m_pChannel | QComboBox 'RGB/Red/Green/Blue' = 0 tip 'Channel for input signal' | m_pChannelLayout 1
m_pBlack | QToolButton '' off with an icon tip 'Set black point' | m_pChannelLayout 3
m_pGray | QToolButton '' off with an icon tip 'Set gray point' | m_pChannelLayout 4
m_pWhite | QToolButton '' off with an icon tip 'Set white point' | m_pChannelLayout 5
m_pDeletePoint2 | QToolButton '' with an icon disabled | m_pChannelLayout 6
m_pOutputLabel | YDColorWidget min 12x40 max 12xany | m_pOutputLayout 0
m_pHistogramm | HistogramWidget | m_pHistogrammLayout 0,0
m_pCurveView | QGraphicsView min 220x256 | m_pCurveLayout 0,0
m_pInputLabel | YDColorWidget min 40x12 max anyx12 | m_pInputLayout 0
m_pInputSlider | YodiCustomSlider 0..255, 'Input of the first point' #000000 0..251 = 0, 'Input of the last point' #ffffff 4..255 = 255 | m_pSliderLayout 0
label_3 | QLabel 'Input:' for m_pInputSpin | m_pPointLayout 0
m_pInputSpin | QLineEdit '0' read-only max 56xany | m_pPointLayout 1
label_2 | QLabel 'Output:' for m_pOutputSpin | m_pPointLayout 2
m_pOutputSpin | QLineEdit '0' read-only max 56xany | m_pPointLayout 3
m_pDeletePoint1 | QToolButton '' with an icon disabled | m_pPointLayout 4
= threshold | Threshold | 286x180 | levelLayout 2 0x0 Expanding Minimum | 
label | QLabel 'Threshold level:' for m_pThresholdLevel | levelLayout 0
m_pThresholdLevel | KVSpinBox 1..255 = 128 by 1 | levelLayout 1
m_pHistogramm | HistogramWidget | m_pHistogrammLayout 0
m_pSlider | YodiCustomSlider 0..255, 'Threshold level' #000000 0..255 = 128 | scaleLayout 1
= hue-saturation | Hue and Saturation | 223x177 | gridLayout 6,0 1x3 188x18 Minimum Expanding | 
m_hueLabel | QLabel 'Hue:' right for m_pHueSpin | gridLayout 0,0
m_pHueSlider | KVSlider 0..360 = 0 by 1, 10 | gridLayout 0,1
m_pHueSpin | KVSpinBox 0..359 = 0 by 1 no arrows min 50x0 | gridLayout 0,2
m_saturationLabel | QLabel 'Saturation:' right for m_pSaturationSpin | gridLayout 1,0
m_pSaturationSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout 1,1
m_pSaturationSpin | KVSpinBox -100..100 = 0 by 1 no arrows min 50x0 | gridLayout 1,2
m_lightnessLabel | QLabel 'Lightness:' right for m_pLightnessSpin | gridLayout 2,0
m_pLightnessSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout 2,1
m_pLightnessSpin | KVSpinBox -100..100 = 0 by 1 no arrows min 50x0 | gridLayout 2,2
m_pColorizeCheckBox | QCheckBox 'Colorize' off tip 'Use the checkbox to colorize the picture in mono color.' | gridLayout 3,1 1x2
m_pPaletteLabel | YDColorWidget min 0x16 max anyx16 | gridLayout 4,1 1x2
m_pColorizeLabel | YDColorWidget min 0x16 max anyx16 | gridLayout 5,1 1x2
= color-balance | Color Balance | 254x341 | gridLayout_2 5,0 1x4 188x24 Minimum Expanding | 
label_2 | QLabel 'Cyan' right for m_pCRSlider | gridLayout_2 0,0
m_pCRSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout_2 0,1
label_5 | QLabel 'Red' for m_pCRSpin | gridLayout_2 0,2
m_pCRSpin | KVSpinBox -100..100 = 0 by 1 right | gridLayout_2 0,3
label_3 | QLabel 'Magenta' right for m_pMGSlider | gridLayout_2 1,0
m_pMGSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout_2 1,1
label_6 | QLabel 'Green' for m_pMGSpin | gridLayout_2 1,2
m_pMGSpin | KVSpinBox -100..100 = 0 by 1 right | gridLayout_2 1,3
label_4 | QLabel 'Yellow' right for m_pYBSlider | gridLayout_2 2,0
m_pYBSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout_2 2,1
label_7 | QLabel 'Blue' for m_pYBSpin | gridLayout_2 2,2
m_pYBSpin | KVSpinBox -100..100 = 0 by 1 right | gridLayout_2 2,3
m_pShadows | QRadioButton 'Shadows' off | gridLayout 0,0
m_pMidtones | QRadioButton 'Midtones' on | gridLayout 0,1
m_pHighlights | QRadioButton 'Highlights' off | gridLayout 0,2
m_pLuminosity | QCheckBox 'Preserve Luminosity' on | gridLayout 1,0 1x3
= black-and-white | Black & White... | 640x480 | gridLayout 6,0 16x20 Fixed Minimum;gridLayout 7,0 1x7 20x24 Minimum Expanding | 
m_pAverage | QRadioButton 'Average' on | gridLayout 0,0 1x7
m_pLuminance | QRadioButton 'Luminance' off | gridLayout 1,0 1x7
m_pD65 | QRadioButton 'D65' off | gridLayout 2,0 1x7
m_pNTSC | QRadioButton 'NTSC Specification' off | gridLayout 3,0 1x7
m_pCIE | QRadioButton 'CIE Specification' off | gridLayout 4,0 1x7
m_pCustom | QRadioButton 'Custom weights:' off | gridLayout 5,0 1x7
label | QLabel 'R:' for m_pRed | gridLayout 6,1
m_pRed | KVDoubleSpinBox 0..1 = 0.333 by 0.001 decimals 3 tip 'Custom weight for R channel' disabled | gridLayout 6,2
label_2 | QLabel 'G:' for m_pGreen | gridLayout 6,3
m_pGreen | KVDoubleSpinBox 0..1 = 0.333 by 0.001 decimals 3 tip 'Custom weight for G channel' disabled | gridLayout 6,4
label_3 | QLabel 'B:' for m_pBlue | gridLayout 6,5
m_pBlue | KVDoubleSpinBox 0..1 = 0.333 by 0.001 decimals 3 tip 'Custom weight for B channel' disabled | gridLayout 6,6
= colorize | Colorize | 260x80 | gridLayout 2,0 1x3 20x16 Minimum Expanding | 
label_2 | QLabel 'Color:' right for m_pColor | gridLayout 0,0
m_pColor | QPushButton '' with an icon min 50x24 max 50x24 | gridLayout 0,1 1x2
label | QLabel 'Amount:' right for m_pAmount | gridLayout 1,0
horizontalSlider | QSlider 0..100 = 25 by 1, 10 | gridLayout 1,1
m_pAmount | KVSpinBox 0..100 = 25 by 1 '#%' | gridLayout 1,2
= photo-filter | Photo filter | 260x110 | gridLayout 4,0 1x3 20x16 Minimum Expanding | 
label_2 | QLabel 'Color:' right for m_pColor | gridLayout 0,0
m_pColor | QPushButton '' with an icon min 0x24 max anyx24 | gridLayout 0,2
label | QLabel 'Density:' right for m_pDensity | gridLayout 1,0
horizontalSlider | KVSlider 0..100 = 50 by 1, 10 | gridLayout 1,1
m_pDensity | KVSpinBox 0..100 = 50 by 1 '#%' | gridLayout 1,2
label_3 | QLabel 'Preset:' right for m_pPresetList | gridLayout 3,0
m_pPresetList | YDCommonComboBox 'Custom/Warming Filter (85)/Warming Filter (LBA)/Warming Filter (81)/Coolling Filter (80)/Cooling Filter (LBB)/Cooling Filter (82)/Red/Orange/Yellow/Green/Cyan/Blue/Violet/Magenta/Sepia/Deep Red/Deep Blue/Deep Emerald/Deep Yellow/Underwater' = 3 | gridLayout 3,1 1x2
= tint | Tint | 300x110 | gridLayout 4,0 1x5 20x16 Minimum Expanding | 
label_2 | QLabel 'Black tone:' right for m_pBlackTone | gridLayout 0,0
m_pBlackTone | QPushButton '' with an icon tip 'Set the color you want to replace the black tone with' min 50x24 max anyx24 | gridLayout 0,1
label_3 | QLabel 'White tone:' right for m_pWhiteTone | gridLayout 0,3
m_pWhiteTone | QPushButton '' with an icon tip 'Set the color you want to replace the white tone with' min 50x24 max anyx24 | gridLayout 0,4
label | QLabel 'Amount:' right for m_pAmount | gridLayout 1,0
horizontalSlider | KVSlider 0..100 = 75 by 1, 10 | gridLayout 1,1 1x3
m_pAmount | KVSpinBox 0..100 = 75 by 1 '#%' min 50x0 | gridLayout 1,4
label_4 | QLabel 'Type:' right for m_pType | gridLayout 3,0
m_pType | YDCommonComboBox 'Average/NTSC/LUMA/RGB' = 0 | gridLayout 3,1 1x4
= temperature | Temperature correction | 640x480 |  | 
labelBrightness | QLabel 'Temperature:' right for m_pTemperature | gridLayout 0,0
ColorTemperatureSlider | KVSlider 1000..40000 = 6500 by 1, 10 | gridLayout 0,1
m_pTemperature | KVSpinBox 1000..40000 = 6500 by 1 '#K' | gridLayout 0,2
label | QLabel 'Strength:' right for m_pStrength | gridLayout 1,0
m_pStrengthSldr | KVSlider 0..100 = 50 by 1, 10 | gridLayout 1,1
m_pStrength | KVSpinBox 0..100 = 50 by 1 | gridLayout 1,2
labelContrast | QLabel 'Tint:' right for m_pTint | gridLayout 2,0
TintSlider | KVSlider -100..100 = 0 by 1, 10 | gridLayout 2,1
m_pTint | KVSpinBox -100..100 = 0 by 1 | gridLayout 2,2
= white-balance | Picture corection | 300x290 | gridLayout 2,0 20x10 Minimum Expanding;gridLayout_3 1,0 20x20 Fixed Minimum | 
groupBox | QGroupBox 'Main' | gridLayout 0,0
m_pAuto | QRadioButton 'Auto correction' on | gridLayout_3 0,0 1x4
m_pEnchanced | QCheckBox 'Advanced correction' off | gridLayout_3 1,1 1x3
m_pOverexposure | QRadioButton 'Overexposure correction' off | gridLayout_3 3,0 1x4
m_pUnderexposure | QRadioButton 'Underexposure correction' off | gridLayout_3 5,0 1x4
label_9 | QLabel 'Power of correction:' for spinBox | horizontalLayout 0
m_pWBStrength | KVSlider 0..100 = 50 by 1, 10 | horizontalLayout 1
spinBox | KVSpinBox 0..100 = 50 by 1 | horizontalLayout 2
m_pTemperatureContent | QGroupBox 'Advanced' off | gridLayout 1,0
label_8 | QLabel 'Temperature:' right for m_pTemperature disabled | gridLayout_4 0,0
TemperatureSlider | KVSlider -100..100 = 0 by 1, 10 ticks 0 every 10 disabled | gridLayout_4 0,1
m_pTemperature | KVSpinBox -100..100 = 0 by 1 disabled | gridLayout_4 0,2
label_6 | QLabel 'Strength:' right for m_pTempStrength disabled | gridLayout_4 1,0
slider_2 | KVSlider 0..100 = 50 by 1, 10 disabled | gridLayout_4 1,1
m_pTempStrength | KVSpinBox 0..100 = 50 by 1 disabled | gridLayout_4 1,2
= color-enhancer | Color enhancer | 260x80 | gridLayout 2,0 1x3 20x10 Minimum Expanding | 
label | QLabel 'Amount:' right for m_pAmount | gridLayout 0,0
horizontalSlider | KVSlider 0..100 = 100 by 1, 10 | gridLayout 0,1
m_pAmount | KVSpinBox 0..100 = 100 by 1 '#%' | gridLayout 0,2
label_2 | QLabel 'Affected:' right for m_pAffected | gridLayout 1,0
horizontalSlider_2 | KVSlider 0..100 = 100 by 1, 10 | gridLayout 1,1
m_pAffected | KVSpinBox 0..100 = 100 by 1 '#%' | gridLayout 1,2
= replace-color | Color Replacement | 300x246 | gridLayout 2,0 20x16 Minimum Expanding;gridLayout_3 0,3 3x20 Fixed Minimum | gridLayout_2 gridLayout_3
groupBox | QGroupBox 'Source' | gridLayout 0,0
label_5 | QLabel 'Position:' right for m_pPositionType min 100x0 max 100xany | gridLayout_2 0,0
m_pPositionType | YDCommonComboBox 'Left top/Right top/Left bottom/Right bottom' = 0 | gridLayout_2 0,1 1x2
label | QLabel 'Tolerance:' right for spinBox min 100x0 max 100xany | gridLayout_2 1,0
m_pSourceTolerance | KVSlider 0..255 = 0 by 1, 10 | gridLayout_2 1,1
spinBox | KVSpinBox 0..255 = 0 by 1 | gridLayout_2 1,2
groupBox_2 | QGroupBox 'Color' | gridLayout 1,0
label_4 | QLabel 'Opacity:' right for spinBox_2 min 100x0 max 100xany | gridLayout_3 0,0
m_pDestinationOpacity | KVSlider 0..100 = 100 by 1, 10 | gridLayout_3 0,1
spinBox_2 | KVSpinBox 0..100 = 100 by 1 '#%' | gridLayout_3 0,2
m_pSelectDestinationColor | QPushButton '' with an icon min 24x24 max 24x24 | gridLayout_3 0,4
= fill-color | Fill color | 522x116 | gridLayout 2,0 1x3 20x16 Minimum Expanding | 
label_2 | QLabel 'Color:' right for m_pColor | gridLayout 0,0
m_pColor | QPushButton '' with an icon min 50x24 max 50x24 | gridLayout 0,1 1x2
label | QLabel 'Opacity:' right for m_pOpacity | gridLayout 1,0
horizontalSlider | KVSlider 0..100 = 100 by 1, 10 | gridLayout 1,1
m_pOpacity | KVSpinBox 0..100 = 100 by 1 '#%' | gridLayout 1,2
= selective-colors | Selective Color | 357x303 | verticalLayout 6 0x0 Minimum Expanding;horizontalLayout_6 2 0x0 Expanding Minimum | 
label | QLabel 'Colors:' for m_pColors | horizontalLayout 0
m_pColors | YDCommonComboBox 'Reds/Yellows/Greens/Cyans/Blues/Magentas/Whites/Neutrals/Blacks' = 0 | horizontalLayout 1
label_2 | QLabel 'Cyan:' for m_pCyan | horizontalLayout_2 0
m_pCyan | KVSpinBox -100..100 = 0 by 1 '#%' right | horizontalLayout_2 1
m_pCyanSlider | KVSlider -100..100 = 0 by 1, 10 | verticalLayout_2 1
label_3 | QLabel 'Magenta:' for m_pMagenta | horizontalLayout_3 0
m_pMagenta | KVSpinBox -100..100 = 0 by 1 '#%' right | horizontalLayout_3 1
m_pMagentaSlider | KVSlider -100..100 = 0 by 1, 10 | verticalLayout_3 1
label_4 | QLabel 'Yellow:' for m_pYellow | horizontalLayout_4 0
m_pYellow | KVSpinBox -100..100 = 0 by 1 '#%' right | horizontalLayout_4 1
m_pYellowSlider | KVSlider -100..100 = 0 by 1, 10 | verticalLayout_4 1
label_5 | QLabel 'Black:' for m_pBlack | horizontalLayout_5 0
m_pBlack | KVSpinBox -100..100 = 0 by 1 '#%' right | horizontalLayout_5 1
m_pBlackSlider | KVSlider -100..100 = 0 by 1, 10 | verticalLayout_5 1
m_pRelative | QRadioButton 'Relative' on | horizontalLayout_6 0
m_pAbsolute | QRadioButton 'Absolute' off | horizontalLayout_6 1
= sign | Sign | 275x333 | gridLayout 3,0 1x3 20x16 Minimum Expanding | gridLayout_2 gridLayout_3
label | QLabel 'Sign image:' right for m_pSelectAnImage | gridLayout 0,0
m_pImageFileName | QLineEdit '' read-only | gridLayout 0,1
m_pSelectAnImage | QPushButton '' with an icon tip 'Choose an image...' | gridLayout 0,2
groupBox | QGroupBox 'Alignment' | gridLayout 1,0 1x3
label_2 | QLabel 'Horizontal:' right for m_pHrzAlignment | gridLayout_2 0,0
m_pHrzAlignment | YDCommonComboBox 'Left/Center/Right' = 0 tip 'Set Horizontal Alignment' | gridLayout_2 0,1 1x2
label_3 | QLabel 'Vertical:' right for m_pVrtAlignment | gridLayout_2 1,0
m_pVrtAlignment | YDCommonComboBox 'Top/Center/Bottom' = 0 tip 'Set Vertical Alignment' | gridLayout_2 1,1 1x2
label_8 | QLabel 'Margins:' right for m_pTopMargin | gridLayout_2 2,0
m_pTopMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Top Margin' | gridLayout_2 2,1 1x2
m_pLeftMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Left Margin' | gridLayout_2 3,1
m_pRightMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Right Margin' | gridLayout_2 3,2
m_pBottomMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Bottom Margin' | gridLayout_2 4,1 1x2
groupBox_2 | QGroupBox 'Blending' | gridLayout 2,0 1x3
label_6 | QLabel 'Opacity:' right for m_pOpacitySpn | gridLayout_3 0,0
m_pOpacitySlider | KVSlider 0..100 = 100 by 1, 10 | gridLayout_3 0,1
m_pOpacitySpn | KVSpinBox 0..100 = 100 by 1 '#%' | gridLayout_3 0,2
label_5 | QLabel 'Mode:' right for m_pBlendCombo | gridLayout_3 1,0
m_pBlendCombo | YDCommonComboBox 'Normal/Multiply/Screen/Overlay/Difference/Exclusion/Lighten colors/Darken colors/Soft light/Hard light/Color dodge/Color burn/Addition' = 0 visible 30 | gridLayout_3 1,1 1x2
= watermark | Watermark | 276x371 | gridLayout 4,0 1x4 20x16 Minimum Expanding | gridLayout gridLayout_2 gridLayout_3
label | QLabel 'Text:' right for m_pText | gridLayout 0,0
m_pText | QLineEdit 'Watermark' | horizontalLayout 0
m_pColor | QPushButton '' with an icon | horizontalLayout 1
m_pSelectFont | QPushButton '' with an icon | horizontalLayout 2
label_8 | QLabel 'H. count:' right for m_pHrzTiles | gridLayout 1,0
m_pHrzTiles | KVSpinBox 1..9 = 1 by 1 | gridLayout 1,1
label_9 | QLabel 'V. count:' right for m_pVrtTiles | gridLayout 1,2
m_pVrtTiles | KVSpinBox 1..9 = 1 by 1 | gridLayout 1,3
groupBox | QGroupBox 'Alignment' | gridLayout 2,0 1x4
label_7 | QLabel 'Angle:' right for m_pAngleSpn | gridLayout_2 0,0
m_pAngleSldr | YDAngleSlider -179..180 = 0 | gridLayout_2 0,1
m_pAngleSpn | KVSpinBox -179..180 = 0 by 1 '#°' tip 'Set Angle' | gridLayout_2 0,2
label_4 | QLabel 'Margins:' right for m_pTopMargin | gridLayout_2 1,0
m_pTopMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Top Margin' | gridLayout_2 1,1 1x2
m_pLeftMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Left Margin' | gridLayout_2 2,1
m_pRightMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Right Margin' | gridLayout_2 2,2
m_pBottomMargin | KVSpinBox 0..999 = 5 by 1 tip 'Set Bottom Margin' | gridLayout_2 3,1 1x2
groupBox_2 | QGroupBox 'Blending' | gridLayout 3,0 1x4
label_5 | QLabel 'Mode:' right for m_pBlendCombo | gridLayout_3 0,0
m_pBlendCombo | YDCommonComboBox 'Normal/Multiply/Screen/Overlay/Difference/Exclusion/Lighten colors/Darken colors/Soft light/Hard light/Color dodge/Color burn/Addition' = 0 visible 30 | gridLayout_3 0,1 1x2
label_6 | QLabel 'Opacity:' right for m_pOpacitySpn | gridLayout_3 1,0
m_pOpacitySlider | KVSlider 0..100 = 100 by 1, 10 | gridLayout_3 1,1
m_pOpacitySpn | KVSpinBox 0..100 = 100 by 1 | gridLayout_3 1,2
)";

/// A control as it is designed: its name, what it is in words, and its place.
struct Control
{
    QString name;
    QString is;
    QString place;
};

/// A panel as it is designed.
struct Form
{
    QString panel;
    QString title;
    QString size;
    QString spacers;
    QString airyGrids;
    std::vector<Control> controls;
};

const std::vector<Form>& Forms()
{
    static const std::vector<Form> all = [] {
        std::vector<Form> forms;
        const auto lines = QString::fromUtf8(Designed).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& line : lines) {
            QStringList cells = line.split(QLatin1Char('|'));
            for (QString& cell : cells)
                cell = cell.trimmed();
            if (line.startsWith(QLatin1Char('=')))
                forms.push_back({cells[0].mid(2), cells[1], cells[2], cells[3], cells[4], {}});
            else
                forms.back().controls.push_back({cells[0], cells[1], cells[2]});
        }
        return forms;
    }();
    return all;
}

} // namespace

/// How every panel is laid out: the forms as they were designed, control by control.
class TestPanelForms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void EveryPanelIsInTheTable();
    void ThePanelIsAsDesigned_data() { AddForms(); }
    void ThePanelIsAsDesigned();
    void ControlsAreAsDesigned_data();
    void ControlsAreAsDesigned();
    void TabGoesThroughTheControlsInOrder_data() { AddForms(); }
    void TabGoesThroughTheControlsInOrder();

private:
    static void AddForms();
    static std::unique_ptr<YDTaskWidget> Make(const Form& form, bool isDialog)
    {
        return AdjustmentCatalog::Find(form.panel)->makeWidget(isDialog, nullptr);
    }
    static const Form& TheForm()
    {
        QFETCH(int, form);
        return Forms()[std::size_t(form)];
    }
};

void TestPanelForms::initTestCase() { QLocale::setDefault(QLocale::c()); }

void TestPanelForms::AddForms()
{
    QTest::addColumn<int>("form");
    for (std::size_t i = 0; i < Forms().size(); ++i)
        QTest::newRow(qPrintable(Forms()[i].panel)) << int(i);
}

void TestPanelForms::EveryPanelIsInTheTable()
{
    QCOMPARE(Forms().size(), AdjustmentCatalog::Entries().size());
    for (std::size_t i = 0; i < Forms().size(); ++i)
        QCOMPARE(Forms()[i].panel, AdjustmentCatalog::Entries()[i].name);
}

void TestPanelForms::ThePanelIsAsDesigned()
{
    const Form& form = TheForm();
    const auto panel = Make(form, false);
    QCOMPARE(panel->windowTitle(), form.title);
    QCOMPARE(panel->GetWidgetName(), form.title);
    QCOMPARE(Make(form, true)->GetWidgetName(), form.title);
    QCOMPARE(Size(panel->size()), form.size);
    QCOMPARE(panel->minimumSize(), QSize(0, 0));
    QCOMPARE(panel->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    QCOMPARE(SpacersOf(*panel).join(QLatin1Char(';')), form.spacers);
    QCOMPARE(AiryGrids(*panel).join(QLatin1Char(' ')), form.airyGrids);
    QStringList names;
    for (const Control& control : form.controls)
        names.append(control.name);
    QStringList children;
    for (const QWidget* const child : NamedChildren(*panel))
        children.append(child->objectName());
    QCOMPARE(children, names);
}

void TestPanelForms::ControlsAreAsDesigned_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("is");
    QTest::addColumn<QString>("place");
    for (std::size_t i = 0; i < Forms().size(); ++i)
        for (const Control& control : Forms()[i].controls)
            QTest::addRow("%s: %s", qPrintable(Forms()[i].panel), qPrintable(control.name))
                << int(i) << control.name << control.is << control.place;
}

/// In a panel and in a dialog alike.
void TestPanelForms::ControlsAreAsDesigned()
{
    QFETCH(QString, name);
    QFETCH(QString, is);
    QFETCH(QString, place);
    for (const bool isDialog : {false, true}) {
        const auto widget = Make(TheForm(), isDialog);
        const auto& control = *PanelKit::Child<QWidget>(*widget, qPrintable(name));
        QCOMPARE(Described(control), is);
        QCOMPARE(PlaceOf(control), place);
    }
}

/// As they stand in the form, but for what has no focus of its own.
void TestPanelForms::TabGoesThroughTheControlsInOrder()
{
    const auto panel = Make(TheForm(), false);
    QStringList expected;
    for (const Control& control : TheForm().controls)
        if (PanelKit::Child<QWidget>(*panel, qPrintable(control.name))->focusPolicy() & Qt::TabFocus)
            expected.append(control.name);
    QCOMPARE(TabOrder(*panel), expected);
}

QTEST_MAIN(TestPanelForms)
#include "tst_PanelForms.moc"
