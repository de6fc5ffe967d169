#include "PanelKit.h"
#include "TestPictures.h"
#include "YDHueSaturationWidget.h"
#include "gui/YDColorWidget.h"
#include "image/YDHueSaturationTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QCheckBox>
#include <QTest>

#include <cmath>

namespace {

using namespace PanelKit;

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
    return ByFunctor(rule, source);
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDHueSaturationWidget>
{
    using Panel::Panel;

    QGradientStops Strip(const char* name) const
    {
        const QBrush brush = Child<YDColorWidget>(name)->BackgroundBrush();
        return brush.gradient() ? brush.gradient()->stops() : QGradientStops();
    }
    QGradientStops AdjustedStrip() const { return Strip("m_pColorizeLabel"); }

    KVSlider* const hueSlider = Child<KVSlider>("m_pHueSlider");
    KVSpinBox* const hueSpin = Child<KVSpinBox>("m_pHueSpin");
    KVSlider* const saturationSlider = Child<KVSlider>("m_pSaturationSlider");
    KVSpinBox* const saturationSpin = Child<KVSpinBox>("m_pSaturationSpin");
    KVSlider* const lightnessSlider = Child<KVSlider>("m_pLightnessSlider");
    KVSpinBox* const lightnessSpin = Child<KVSpinBox>("m_pLightnessSpin");
    QCheckBox* const colorize = Child<QCheckBox>("m_pColorizeCheckBox");
};

} // namespace

class TestYDHueSaturationWidget : public QObject
{
    Q_OBJECT

private slots:
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
    void GroovesFollowWhatTheyDependOn();
    void TheColoursFollowBetweenTheTwoSignals();
    void AnyOtherNumberThanZeroColorizes();
    void ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds_data();
    void ARecordBeyondTheControlsIsKeptAndProcessedAsTheirEnds();
    void ThePanelConvertsByItsControls();
};

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
    Announcements announcements(f.widget);
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

Q_DECLARE_METATYPE(Params)

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

void TestYDHueSaturationWidget::AnyOtherNumberThanZeroColorizes()
{
    QDataStream stream(Bytes("KVHueSaturation 1.00000", {Highest, Lowest, -1, 256}));
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(Highest, Lowest, -1, true)));
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
