#include "AdjustmentProbe.h"
#include "TestPictures.h"
#include "YDHueSaturationWidget.h"
#include "gui/YDColorWidget.h"
#include "image/YDHueSaturationTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QCheckBox>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace AdjustmentProbe;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int PatienceMs = 20000;
constexpr int QuietMs = 150;

using Params = YDHueSaturationWidget::Params;

Params Record(int hue, int saturation, int lightness, bool colorize)
{
    Params params;
    params.hue = hue;
    params.saturation = saturation;
    params.lightness = lightness;
    params.colorize = colorize;
    return params;
}

/// The stops that colours of these hues give at equal distances.
QGradientStops EvenStops(const QVector<int>& hues, int saturation, int lightness)
{
    QGradientStops stops;
    for (int i = 0; i < hues.size(); ++i)
        stops.append({double(i) / (hues.size() - 1), QColor::fromHsl(hues[i], saturation, lightness)});
    return stops;
}

void CompareStops(const QGradientStops& actual, const QGradientStops& expected)
{
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < actual.size(); ++i) {
        QVERIFY2(std::abs(actual[i].first - expected[i].first) < 1e-12, qPrintable(QString::number(i)));
        QVERIFY(actual[i].second.isValid());
        QCOMPARE(actual[i].second, expected[i].second);
    }
    QCOMPARE(actual.first().first, 0.0);
    QCOMPARE(actual.last().first, 1.0);
}

void CheckLeftToRight(const QLinearGradient& gradient)
{
    QCOMPARE(gradient.start(), QPointF(0, 0));
    QCOMPARE(gradient.finalStop(), QPointF(1, 0));
}

/// What the pixel form makes of `source`.
RGBA32iImage Expected(const Params& params, const RGBA32iImage& source)
{
    const YDHueSaturationTransformation rule(params.hue, params.saturation, params.lightness,
                                             params.colorize);
    const RGBA32iImage image = source.DeepCopy();
    for (int y = 0; y < image.Height(); ++y)
        for (int x = 0; x < image.Width(); ++x)
            rule(image.Row(y)[x]);
    return image;
}

/// A widget of the adjustment and its controls.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    QGradientStops Strip(const char* name) const
    {
        const QBrush brush = Child<YDColorWidget>(widget, name)->BackgroundBrush();
        return brush.gradient() ? brush.gradient()->stops() : QGradientStops();
    }
    QGradientStops AdjustedStrip() const { return Strip("m_pColorizeLabel"); }

    YDHueSaturationWidget widget;
    KVSlider* const hueSlider = Child<KVSlider>(widget, "m_pHueSlider");
    KVSpinBox* const hueSpin = Child<KVSpinBox>(widget, "m_pHueSpin");
    KVSlider* const saturationSlider = Child<KVSlider>(widget, "m_pSaturationSlider");
    KVSpinBox* const saturationSpin = Child<KVSpinBox>(widget, "m_pSaturationSpin");
    KVSlider* const lightnessSlider = Child<KVSlider>(widget, "m_pLightnessSlider");
    KVSpinBox* const lightnessSpin = Child<KVSpinBox>(widget, "m_pLightnessSpin");
    QCheckBox* const colorize = Child<QCheckBox>(widget, "m_pColorizeCheckBox");
};

} // namespace

class TestYDHueSaturationWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void StripsAreSixteenPixelsHigh();
    void SlidersAndSpinBoxesFollowEachOther();
    void TheHueSliderMovedToAFullTurnEndsADegreeBefore_data();
    void TheHueSliderMovedToAFullTurnEndsADegreeBefore();
    void TheHueGrooveGoesAroundTheCircle_data();
    void TheHueGrooveGoesAroundTheCircle();
    void TheSaturationGrooveGoesFromGreyToFullColour_data();
    void TheSaturationGrooveGoesFromGreyToFullColour();
    void TheReferenceStripShowsTheHuesAsTheyAre();
    void TheAdjustedStripShowsTheSettings_data();
    void TheAdjustedStripShowsTheSettings();
    void ThePanelOpensInItsDefaultColours();
    void AChangeIsStoredAndAnnouncedOnceInOrder_data();
    void AChangeIsStoredAndAnnouncedOnceInOrder();
    void GroovesFollowWhatTheyDependOn();
    void TheColoursFollowBetweenTheTwoSignals();
    void SettingARecordShowsItAndAnnouncesNothing();
    void ResetAnnouncesWhatReallyChanges();
    void ResetStartsAPreviewOfWhatReallyChanges();
    void TheStreamIsTagAndFourNumbers();
    void AnyOtherNumberThanZeroColorizes();
    void AStreamThatCannotBeReadGivesDefaultsAndOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds_data();
    void ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds();
    void ThePanelConvertsByItsControls();
};

void TestYDHueSaturationWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDHueSaturationWidget"));
}

void TestYDHueSaturationWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Hue and Saturation"));
    QCOMPARE(f.widget.size(), QSize(223, 177));
    QCOMPARE(f.widget.minimumSize(), QSize(0, 0));
    QCOMPARE(f.widget.maximumSize(), QSize(16777215, 16777215));
    const auto* const outer = Child<QGridLayout>(f.widget, "gridLayout_2");
    const auto* const grid = Child<QGridLayout>(f.widget, "gridLayout");
    QCOMPARE(outer->itemAtPosition(0, 0)->layout(), grid);
    const auto right = Qt::AlignRight | Qt::AlignVCenter;
    CheckLabel(f.widget, *grid, 0, 0, "m_hueLabel", "Hue:", right);
    CheckSlider(f.widget, *grid, 0, "m_pHueSlider", 0, 360, 0);
    CheckSpinBox(f.widget, *grid, 0, 2, "m_pHueSpin", 0, 359, 0);
    CheckLabel(f.widget, *grid, 1, 0, "m_saturationLabel", "Saturation:", right);
    CheckSlider(f.widget, *grid, 1, "m_pSaturationSlider", -100, 100, 0);
    CheckSpinBox(f.widget, *grid, 1, 2, "m_pSaturationSpin", -100, 100, 0);
    CheckLabel(f.widget, *grid, 2, 0, "m_lightnessLabel", "Lightness:", right);
    CheckSlider(f.widget, *grid, 2, "m_pLightnessSlider", -100, 100, 0);
    CheckSpinBox(f.widget, *grid, 2, 2, "m_pLightnessSpin", -100, 100, 0);
    for (const KVSpinBox* const spin : {f.hueSpin, f.saturationSpin, f.lightnessSpin}) {
        QCOMPARE(spin->buttonSymbols(), QAbstractSpinBox::NoButtons);
        QCOMPARE(spin->minimumWidth(), 50);
    }
    QCOMPARE(f.hueSlider->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(f.hueSlider->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    CheckButton<QCheckBox>(f.widget, *grid, 3, 1, 2, "m_pColorizeCheckBox", "Colorize");
    QCOMPARE(f.colorize->toolTip(),
             QStringLiteral("Use the checkbox to colorize the picture in mono color."));
    QVERIFY(!f.colorize->isChecked());
    auto* const spacer = grid->itemAtPosition(6, 0)->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), QSize(188, 18));
    QCOMPARE(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void TestYDHueSaturationWidget::StripsAreSixteenPixelsHigh()
{
    Fixture f(false);
    const auto* const grid = Child<QGridLayout>(f.widget, "gridLayout");
    int row = 4;
    for (const char* const name : {"m_pPaletteLabel", "m_pColorizeLabel"}) {
        const auto* const strip = Child<YDColorWidget>(f.widget, name);
        QCOMPARE(strip->minimumHeight(), 16);
        QCOMPARE(strip->maximumHeight(), 16);
        QCOMPARE(grid->itemAtPosition(row, 1)->widget(), strip);
        QCOMPARE(grid->itemAtPosition(row, 2)->widget(), strip);
        ++row;
    }
}

void TestYDHueSaturationWidget::SlidersAndSpinBoxesFollowEachOther()
{
    Fixture f;
    f.hueSlider->setValue(200);
    QCOMPARE(f.hueSpin->value(), 200);
    f.hueSpin->setValue(100);
    QCOMPARE(f.hueSlider->value(), 100);
    f.saturationSlider->setValue(-30);
    QCOMPARE(f.saturationSpin->value(), -30);
    f.saturationSpin->setValue(30);
    QCOMPARE(f.saturationSlider->value(), 30);
    f.lightnessSlider->setValue(-40);
    QCOMPARE(f.lightnessSpin->value(), -40);
    f.lightnessSpin->setValue(40);
    QCOMPARE(f.lightnessSlider->value(), 40);
}

void TestYDHueSaturationWidget::TheHueSliderMovedToAFullTurnEndsADegreeBefore_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<bool>("isDrag");
    QTest::addColumn<QString>("announced");
    QTest::newRow("from 0") << 0 << false << OneChange();
    QTest::newRow("from 359") << 359 << false << QString();
    QTest::newRow("dragged from 0") << 0 << true << OneChange();
    QTest::newRow("dragged from 359") << 359 << true << QString();
}

void TestYDHueSaturationWidget::TheHueSliderMovedToAFullTurnEndsADegreeBefore()
{
    QFETCH(int, from);
    QFETCH(bool, isDrag);
    QFETCH(QString, announced);
    Fixture f;
    f.hueSlider->setValue(from);
    Announcements<YDHueSaturationWidget> announcements(f.widget);
    f.hueSlider->setSliderDown(isDrag);
    f.hueSlider->setSliderPosition(360);
    f.hueSlider->setSliderDown(false);
    QCOMPARE(f.hueSlider->value(), 359);
    QCOMPARE(f.hueSlider->sliderPosition(), 359);
    QCOMPARE(f.hueSpin->value(), 359);
    QCOMPARE(f.widget.GetValue().hue, 359);
    QCOMPARE(announcements.Take(), announced);
}

void TestYDHueSaturationWidget::TheHueGrooveGoesAroundTheCircle_data()
{
    QTest::addColumn<int>("saturation");
    QTest::addColumn<int>("lightness");
    QTest::addColumn<int>("s");
    QTest::addColumn<int>("l");
    QTest::newRow("defaults") << 0 << 0 << 127 << 127;
    QTest::newRow("grey") << -100 << 0 << 0 << 127;
    QTest::newRow("full colour") << 100 << 0 << 255 << 127;
    QTest::newRow("black") << 0 << -100 << 127 << 0;
    QTest::newRow("white") << 0 << 100 << 127 << 255;
    QTest::newRow("between") << 33 << -7 << 169 << 118; // 169.575 and 118.575
    QTest::newRow("beyond") << 101 << -101 << 255 << 0;
    QTest::newRow("lowest") << Lowest << Lowest << 0 << 0;
    QTest::newRow("highest") << Highest << Highest << 255 << 255;
}

void TestYDHueSaturationWidget::TheHueGrooveGoesAroundTheCircle()
{
    QFETCH(int, saturation);
    QFETCH(int, lightness);
    QFETCH(int, s);
    QFETCH(int, l);
    const QLinearGradient gradient = YDHueSaturationWidget::GetHue(saturation, lightness);
    CheckLeftToRight(gradient);
    CompareStops(gradient.stops(), EvenStops({0,   18,  36,  54,  72,  90,  108, 126, 144, 162, 180,
                                              198, 216, 234, 252, 270, 288, 306, 324, 342, 0},
                                             s, l));
}

void TestYDHueSaturationWidget::TheSaturationGrooveGoesFromGreyToFullColour_data()
{
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("lightness");
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("l");
    QTest::newRow("defaults") << 0 << 0 << 0 << 127;
    QTest::newRow("blue") << 240 << 0 << 240 << 127;
    QTest::newRow("last hue") << 359 << 50 << 359 << 191; // 191.25
    QTest::newRow("black") << 120 << -100 << 120 << 0;
    QTest::newRow("white") << 120 << 100 << 120 << 255;
    QTest::newRow("a full turn") << 360 << 0 << 0 << 127;
    QTest::newRow("more than a turn") << 400 << 0 << 40 << 127;
    QTest::newRow("almost two turns") << 719 << 0 << 359 << 127;
    QTest::newRow("below 0") << -1 << 0 << 0 << 127;
    QTest::newRow("a turn below 0") << -360 << 0 << 0 << 127;
    QTest::newRow("far below 0") << -390 << 0 << 0 << 127;
    QTest::newRow("lowest") << Lowest << Lowest << 0 << 0;
    QTest::newRow("highest") << Highest << Highest << 127 << 255; // 2147483647 = 5965232 * 360 + 127
}

void TestYDHueSaturationWidget::TheSaturationGrooveGoesFromGreyToFullColour()
{
    QFETCH(int, hue);
    QFETCH(int, lightness);
    QFETCH(int, h);
    QFETCH(int, l);
    const QLinearGradient gradient = YDHueSaturationWidget::GetSaturation(hue, lightness);
    CheckLeftToRight(gradient);
    CompareStops(gradient.stops(), {{0.0, QColor::fromHsl(h, 0, l)}, {1.0, QColor::fromHsl(h, 255, l)}});
}

void TestYDHueSaturationWidget::TheReferenceStripShowsTheHuesAsTheyAre()
{
    Fixture f;
    f.widget.SetValue(Record(200, 50, 20, true)); // whatever is set
    const QBrush brush = Child<YDColorWidget>(f.widget, "m_pPaletteLabel")->BackgroundBrush();
    QCOMPARE(brush.style(), Qt::LinearGradientPattern);
    QCOMPARE(brush.gradient()->coordinateMode(), QGradient::StretchToDeviceMode);
    CheckLeftToRight(*static_cast<const QLinearGradient*>(brush.gradient()));
    const QGradientStops stops = f.Strip("m_pPaletteLabel");
    CompareStops(stops, EvenStops({0, 60, 120, 180, 240, 300, 0}, 255, 127));
    // Red, yellow, green, cyan, blue, magenta and red again, at a lightness of 127 of 255.
    const QRgb colours[] = {qRgb(254, 0, 0), qRgb(254, 254, 0), qRgb(0, 254, 0), qRgb(0, 254, 254),
                            qRgb(0, 0, 254), qRgb(254, 0, 254), qRgb(254, 0, 0)};
    for (int i = 0; i < 7; ++i)
        QCOMPARE(stops[i].second.rgb(), colours[i]);
}

void TestYDHueSaturationWidget::TheAdjustedStripShowsTheSettings_data()
{
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("saturation");
    QTest::addColumn<int>("lightness");
    QTest::addColumn<bool>("colorize");
    QTest::addColumn<QVector<int>>("hues");
    QTest::addColumn<int>("s");
    QTest::addColumn<int>("l");
    QTest::newRow("defaults") << 0 << 0 << 0 << false << QVector<int>{0, 60, 120, 180, 240, 300, 0} << 127
                              << 127;
    QTest::newRow("turned") << 200 << 0 << 0 << false << QVector<int>{200, 260, 320, 20, 80, 140, 200} << 127
                            << 127;
    QTest::newRow("one colour") << 200 << 0 << 0 << true << QVector<int>{200, 200, 200, 200, 200, 200, 200}
                                << 127 << 127;
    QTest::newRow("grey") << 0 << -100 << 0 << false << QVector<int>{0, 60, 120, 180, 240, 300, 0} << 0
                          << 127;
    QTest::newRow("full colour") << 0 << 100 << 0 << false << QVector<int>{0, 60, 120, 180, 240, 300, 0}
                                 << 254 << 127;
    QTest::newRow("black and white ends")
        << 359 << 33 << -100 << false << QVector<int>{359, 59, 119, 179, 239, 299, 359} << 169 << 0;
    QTest::newRow("light") << 0 << -33 << 100 << true << QVector<int>{0, 0, 0, 0, 0, 0, 0} << 85 << 254;
}

void TestYDHueSaturationWidget::TheAdjustedStripShowsTheSettings()
{
    QFETCH(int, hue);
    QFETCH(int, saturation);
    QFETCH(int, lightness);
    QFETCH(bool, colorize);
    QFETCH(QVector<int>, hues);
    QFETCH(int, s);
    QFETCH(int, l);
    Fixture byRecord;
    byRecord.widget.SetValue(Record(hue, saturation, lightness, colorize));
    CompareStops(byRecord.AdjustedStrip(), EvenStops(hues, s, l));
    Fixture byHand;
    byHand.hueSpin->setValue(hue);
    byHand.saturationSpin->setValue(saturation);
    byHand.lightnessSpin->setValue(lightness);
    byHand.colorize->setChecked(colorize);
    CompareStops(byHand.AdjustedStrip(), EvenStops(hues, s, l));
    const QBrush brush = Child<YDColorWidget>(byHand.widget, "m_pColorizeLabel")->BackgroundBrush();
    QCOMPARE(brush.gradient()->coordinateMode(), QGradient::StretchToDeviceMode);
    CheckLeftToRight(*static_cast<const QLinearGradient*>(brush.gradient()));
}

void TestYDHueSaturationWidget::ThePanelOpensInItsDefaultColours()
{
    const Fixture f;
    QCOMPARE(f.hueSlider->styleSheet(), GrooveSheet(YDHueSaturationWidget::GetHue(0, 0)));
    QCOMPARE(f.saturationSlider->styleSheet(), GrooveSheet(YDHueSaturationWidget::GetSaturation(0, 0)));
    QVERIFY(f.lightnessSlider->styleSheet().isEmpty());
    QVERIFY(f.saturationSlider->styleSheet().contains(
        QStringLiteral("stop: 0 rgb(127, 127, 127),stop: 1 rgb(254, 0, 0),")));
    CompareStops(f.AdjustedStrip(), EvenStops({0, 60, 120, 180, 240, 300, 0}, 127, 127));
    CompareStops(f.Strip("m_pPaletteLabel"), EvenStops({0, 60, 120, 180, 240, 300, 0}, 255, 127));
}

void TestYDHueSaturationWidget::AChangeIsStoredAndAnnouncedOnceInOrder_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<Params>("expected");
    const auto add = [](const char* control, const char* property, const QVariant& value,
                        const Params& expected) {
        QTest::newRow(control) << QString::fromLatin1(control) << QString::fromLatin1(property) << value
                               << expected;
    };
    add("m_pHueSlider", "value", 25, Record(25, 0, 0, false));
    add("m_pHueSpin", "value", 25, Record(25, 0, 0, false));
    add("m_pSaturationSlider", "value", -25, Record(0, -25, 0, false));
    add("m_pSaturationSpin", "value", -25, Record(0, -25, 0, false));
    add("m_pLightnessSlider", "value", 25, Record(0, 0, 25, false));
    add("m_pLightnessSpin", "value", 25, Record(0, 0, 25, false));
    add("m_pColorizeCheckBox", "checked", true, Record(0, 0, 0, true));
}

Q_DECLARE_METATYPE(Params)

void TestYDHueSaturationWidget::AChangeIsStoredAndAnnouncedOnceInOrder()
{
    QFETCH(QString, control);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(Params, expected);
    Fixture f;
    Announcements<YDHueSaturationWidget> announcements(f.widget);
    Child<QWidget>(f.widget, qPrintable(control))->setProperty(qPrintable(property), value);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), expected));
}

void TestYDHueSaturationWidget::GroovesFollowWhatTheyDependOn()
{
    Fixture f;
    const auto grooves = [&f] {
        return QStringList({f.hueSlider->styleSheet(), f.saturationSlider->styleSheet()});
    };
    const auto expected = [](const QLinearGradient& hue, const QLinearGradient& saturation) {
        return QStringList({GrooveSheet(hue), GrooveSheet(saturation)});
    };
    using Widget = YDHueSaturationWidget;
    f.hueSpin->setValue(120);
    QCOMPARE(grooves(), expected(Widget::GetHue(0, 0), Widget::GetSaturation(120, 0)));
    f.saturationSpin->setValue(60);
    QCOMPARE(grooves(), expected(Widget::GetHue(60, 0), Widget::GetSaturation(120, 0)));
    f.lightnessSpin->setValue(-20);
    QCOMPARE(grooves(), expected(Widget::GetHue(60, -20), Widget::GetSaturation(120, -20)));
    f.colorize->setChecked(true);
    QCOMPARE(grooves(), expected(Widget::GetHue(60, -20), Widget::GetSaturation(120, -20)));
    f.widget.SetValue(Record(240, -50, 30, false));
    QCOMPARE(grooves(), expected(Widget::GetHue(-50, 30), Widget::GetSaturation(240, 30)));
    f.widget.Reset();
    QCOMPARE(grooves(), expected(Widget::GetHue(0, 0), Widget::GetSaturation(0, 0)));
}

void TestYDHueSaturationWidget::TheColoursFollowBetweenTheTwoSignals()
{
    Fixture f;
    QStringList seen;
    const auto look = [&] {
        const auto* const strip = Child<YDColorWidget>(f.widget, "m_pColorizeLabel");
        seen.append(QString::number(strip->BackgroundBrush().gradient()->stops().at(0).second.hslHue()) +
                    f.saturationSlider->styleSheet());
    };
    connect(&f.widget, &YDHueSaturationWidget::ValueChanged, this, look);
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, look);
    f.hueSpin->setValue(120);
    QCOMPARE(seen, QStringList(
                       {QStringLiteral("0") + GrooveSheet(YDHueSaturationWidget::GetSaturation(0, 0)),
                        QStringLiteral("120") + GrooveSheet(YDHueSaturationWidget::GetSaturation(120, 0))}));
}

void TestYDHueSaturationWidget::SettingARecordShowsItAndAnnouncesNothing()
{
    Fixture f;
    Announcements<YDHueSaturationWidget> announcements(f.widget);
    f.widget.SetValue(Record(300, -40, 20, true));
    QCOMPARE(announcements.Take(), QString());
    QCOMPARE(f.hueSpin->value(), 300);
    QCOMPARE(f.hueSlider->value(), 300);
    QCOMPARE(f.saturationSpin->value(), -40);
    QCOMPARE(f.saturationSlider->value(), -40);
    QCOMPARE(f.lightnessSpin->value(), 20);
    QCOMPARE(f.lightnessSlider->value(), 20);
    QVERIFY(f.colorize->isChecked());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(300, -40, 20, true)));
    f.hueSpin->setValue(301); // the slots are connected again
    f.saturationSpin->setValue(-41);
    f.lightnessSpin->setValue(21);
    f.colorize->setChecked(false);
    QCOMPARE(announcements.Take().count(QStringLiteral("data")), 4);
}

void TestYDHueSaturationWidget::ResetAnnouncesWhatReallyChanges()
{
    Fixture f;
    Announcements<YDHueSaturationWidget> announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), QString());
    f.widget.SetValue(Record(10, 0, 30, true));
    f.widget.Reset();
    QCOMPARE(announcements.Take().count(QStringLiteral("data")), 3);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QCOMPARE(f.hueSlider->value() + f.saturationSlider->value() + f.lightnessSlider->value(), 0);
    QVERIFY(!f.colorize->isChecked());
}

void TestYDHueSaturationWidget::ResetStartsAPreviewOfWhatReallyChanges()
{
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    Fixture f;
    f.widget.SetValue(Record(50, -20, 10, true));
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(!TestPictures::AreEqual(f.widget.AdjustedImage(), source));
    f.widget.Reset();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), source));
    f.widget.Reset();
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 2);
}

void TestYDHueSaturationWidget::TheStreamIsTagAndFourNumbers()
{
    const QByteArray expected = Bytes("KVHueSaturation 1.00000", {300, -40, 20, 1});
    QCOMPARE(Written(Record(300, -40, 20, true)), expected);
    QCOMPARE(Written(Params()), Bytes("KVHueSaturation 1.00000", {0, 0, 0, 0}));
    QDataStream stream(expected);
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(300, -40, 20, true)));
    QVERIFY(stream.atEnd());
}

void TestYDHueSaturationWidget::AnyOtherNumberThanZeroColorizes()
{
    QDataStream stream(Bytes("KVHueSaturation 1.00000", {Highest, Lowest, -1, 256}));
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Highest, Lowest, -1, true)));
}

void TestYDHueSaturationWidget::AStreamThatCannotBeReadGivesDefaultsAndOneLine()
{
    const QRegularExpression line(
        QStringLiteral("^\\[src/YDHueSaturationWidget:[0-9]+\\] Read hue and saturation data error\\.$"));
    const QByteArray whole = Written(Record(300, -40, 20, true));
    QByteArray otherVersion = whole;
    otherVersion.replace("1.00000", "1.00001");
    QVector<QByteArray> streams{otherVersion};
    for (int length = 0; length < whole.size(); ++length)
        streams.append(whole.left(length));
    for (const QByteArray& bytes : qAsConst(streams)) {
        QDataStream stream(bytes);
        Params params = Record(1, 2, 3, true);
        QTest::ignoreMessage(QtDebugMsg, line);
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
    }
}

void TestYDHueSaturationWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral("^\\[src/YDHueSaturationWidget:[0-9]+\\] "
                                                           "Write hue and saturation data error\\.$")));
    stream << Params();
}

void TestYDHueSaturationWidget::ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds_data()
{
    QTest::addColumn<Params>("stored");
    QTest::addColumn<Params>("shown");
    QTest::newRow("hue of a full turn") << Record(360, 0, 0, false) << Record(359, 0, 0, false);
    QTest::newRow("hue of more than a turn") << Record(400, 0, 0, false) << Record(359, 0, 0, false);
    QTest::newRow("hue below 0") << Record(-30, 0, 0, false) << Record(0, 0, 0, false);
    QTest::newRow("saturation") << Record(0, 101, 0, false) << Record(0, 100, 0, false);
    QTest::newRow("lightness") << Record(0, 0, -101, false) << Record(0, 0, -100, false);
    QTest::newRow("lowest") << Record(Lowest, Lowest, Lowest, true) << Record(0, -100, -100, true);
    QTest::newRow("highest") << Record(Highest, Highest, Highest, true) << Record(359, 100, 100, true);
}

void TestYDHueSaturationWidget::ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds()
{
    QFETCH(Params, stored);
    QFETCH(Params, shown);
    Fixture f(false);
    f.widget.SetValue(stored);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), stored));
    QCOMPARE(f.hueSpin->value(), shown.hue);
    QCOMPARE(f.hueSlider->value(), shown.hue);
    QCOMPARE(f.saturationSpin->value(), shown.saturation);
    QCOMPARE(f.lightnessSpin->value(), shown.lightness);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), Expected(shown, source)));
    const QGradientStops strip = f.AdjustedStrip();
    for (const QGradientStop& stop : strip)
        QVERIFY(stop.second.isValid());
    f.widget.Reset();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QCOMPARE(f.hueSlider->styleSheet(), GrooveSheet(YDHueSaturationWidget::GetHue(0, 0)));
    QCOMPARE(f.saturationSlider->styleSheet(), GrooveSheet(YDHueSaturationWidget::GetSaturation(0, 0)));
}

void TestYDHueSaturationWidget::ThePanelConvertsByItsControls()
{
    const RGBA32iImage source = TestPictures::Random(150, 60, 6);
    Fixture f(false);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
    f.hueSlider->setValue(50);
    f.saturationSlider->setValue(-20);
    f.lightnessSlider->setValue(10);
    QVERIFY(
        TestPictures::AreEqual(Converted(f.widget, source), Expected(Record(50, -20, 10, false), source)));
    f.colorize->setChecked(true);
    const RGBA32iImage colorized = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(colorized, Expected(Record(50, -20, 10, true), source)));
    QVERIFY(!TestPictures::AreEqual(colorized, Expected(Record(50, -20, 10, false), source)));
}

QTEST_MAIN(TestYDHueSaturationWidget)
#include "tst_YDHueSaturationWidget.moc"
