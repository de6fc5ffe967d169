#include "PanelKit.h"
#include "Photographs.h"
#include "TestPictures.h"
#include "YDWBWidget.h"
#include "image/KVIterativeWBTransformation.h"
#include "image/KVRGBHistogram.h"
#include "image/YDBlend.h"
#include "image/YDIterativeLevelsTransformation.h"
#include "image/YDIterativePhotoFilterTransformation.h"
#include "image/YDTemperatureCorrection.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHash>
#include <QMetaMethod>
#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <array>

namespace {

using namespace PanelKit;

constexpr int PhotographWidth = 400;

using Params = YDWBWidget::Params;

Params Enhanced(int strength)
{
    Params params;
    params.enhanced = true;
    params.autoStrength = strength;
    return params;
}

Params OfMode(int mode)
{
    Params params;
    params.mode = mode;
    params.autoStrength = 30;
    params.overexposureStrength = 60;
    params.underexposureStrength = 90;
    return params;
}

/// A photograph by the first part of its file name; loaded once, so not to be written to.
RGBA32iImage Photograph(const QByteArray& name = "picosdeeuropa")
{
    static QHash<QByteArray, RGBA32iImage> loaded;
    if (!loaded.contains(name))
        loaded.insert(name, Photographs::Load(QString::fromLatin1(name + "_by_Aitzol_Berasategi.jpg"),
                                              PhotographWidth));
    return loaded.value(name);
}

/// A mask with feathered coverage.
RGBA32iImage Mask(int width, int height)
{
    const RGBA32iImage mask(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto coverage = quint8(std::clamp(x * 8 - y, 0, 255));
            mask.Row(y)[x] = YDRGBA32i(coverage, coverage, coverage, coverage);
        }
    return mask;
}

/// A selection of a picture of size `picture`.
struct Selection
{
    RGBA32iImage mask;
    QPoint offset;
    QRect bounds; ///< of the mask
    QSize picture;

    /// The mask's pixel for the pixel (x, y) of the picture; null outside of what is selected.
    ///
    /// The mask is read from where the rectangle begins in it, or from further inside by what lies left of or
    /// above the picture's origin of the whole mask, not only of the rectangle.
    const YDRGBA32i* At(int x, int y) const
    {
        const QRect covered = bounds.translated(offset) & QRect(QPoint(), picture);
        const QRect read = bounds.translated(std::max(-offset.x(), 0), std::max(-offset.y(), 0)) &
                           QRect(0, 0, mask.Width(), mask.Height());
        const QPoint point = read.topLeft() + QPoint(x, y) - covered.topLeft();
        return covered.contains(x, y) && read.contains(point) ? mask.Row(point.y()) + point.x() : nullptr;
    }
};

Selection SelectionOf(const RGBA32iImage& picture, const QPoint& offset, const QRect& bounds)
{
    return {Mask(100, 80), offset, bounds, QSize(picture.Width(), picture.Height())};
}

/// What `widget` makes of `source`, within the selection if there is one.
RGBA32iImage ConvertedWithin(YDWBWidget& widget, const RGBA32iImage& source, const Selection* selection)
{
    if (!selection)
        return Converted(widget, source);
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, selection->mask, selection->offset, selection->bounds);
    return image;
}

/// What `rule` makes of `source` within the selection, if there is one.
template <class Rule>
RGBA32iImage Selected(const Rule& rule, const RGBA32iImage& source, const Selection* selection)
{
    const RGBA32iImage all = ByRule(rule, source);
    if (!selection)
        return all;
    const RGBA32iImage result = source.DeepCopy();
    for (int y = 0; y < result.Height(); ++y)
        for (int x = 0; x < result.Width(); ++x)
            if (const YDRGBA32i* const coverage = selection->At(x, y))
                YDBlend::YDSourceBySelection()(all.Row(y)[x], result.Row(y)[x], *coverage);
    return result;
}

using Counts = std::array<quint32, 256>;

/// The clipping rule, word by word.
void ClippedRange(const Counts& counts, double pixels, int (&range)[2])
{
    int lo = 255;
    int hi = 0;
    for (int i = 0; i < 256; ++i)
        if (counts[std::size_t(i)] != 0) {
            lo = std::min(lo, i);
            hi = std::max(hi, i);
        }
    if (lo > hi)
        lo = hi = 0;
    int low = lo;
    int high = hi;
    double sum = 0;
    for (int v = lo; v <= hi; ++v) {
        sum += counts[std::size_t(v)];
        const double f = (1.0 / pixels) * sum;
        if (f < 0.002) {
            low = v;
        } else if (f >= 0.998) {
            high = v;
            break;
        }
    }
    if (high - low < 16) {
        low = std::max((high + low) / 2 - 8, 0);
        high = low + 16;
        if (high > 255) {
            high = 255;
            low = 239;
        }
    }
    range[0] = low;
    range[1] = high;
}

YDIterativeLevelsTransformation AutomaticLevels(const RGBA32iImage& picture)
{
    Counts red{}, green{}, blue{};
    const KVRGBHistogram count(red.data(), green.data(), blue.data());
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            count(picture.Row(y)[x]);
    const double pixels = double(picture.Width()) * picture.Height();
    int input[4][2] = {{0, 255}};
    ClippedRange(red, pixels, input[1]);
    ClippedRange(green, pixels, input[2]);
    ClippedRange(blue, pixels, input[3]);
    const int output[4][2] = {{0, 255}, {0, 255}, {0, 255}, {0, 255}};
    const double gamma[4] = {1, 1, 1, 1};
    return YDIterativeLevelsTransformation(input, output, gamma, 100);
}

/// The colour of `above` laid over that of `below`, with the alpha of `below`.
YDRGBA32i MixedOver(const YDRGBA32i& above, const YDRGBA32i& below, int opacity)
{
    const auto mix = [opacity](int over, int under) {
        return quint8((over * opacity + under * (256 - opacity) + 128) / 256);
    };
    return {mix(above.b, below.b), mix(above.g, below.g), mix(above.r, below.r), below.a};
}

/// The advanced correction step by step, on the whole picture and pixel by pixel.
RGBA32iImage ExpectedEnhanced(const RGBA32iImage& source, int strength, const Selection* selection)
{
    const KVIterativeWBTransformation balance(source, KVWBTransformation::Auto, 100);
    const RGBA32iImage balanced = Selected(balance, source, selection);
    const RGBA32iImage stretched = Selected(AutomaticLevels(balanced), balanced, selection);
    const RGBA32iImage result = source.DeepCopy();
    for (int y = 0; y < result.Height(); ++y)
        for (int x = 0; x < result.Width(); ++x) {
            const YDRGBA32i mixed = MixedOver(stretched.Row(y)[x], source.Row(y)[x], strength * 256 / 100);
            const YDRGBA32i* const coverage = selection ? selection->At(x, y) : nullptr;
            if (!selection)
                result.Row(y)[x] = mixed;
            else if (coverage)
                YDBlend::YDSourceBySelection()(mixed, result.Row(y)[x], *coverage);
        }
    return result;
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDWBWidget>
{
    explicit Fixture(bool isDialog = false) : Panel(isDialog) {}

    QRadioButton* const automatic = Child<QRadioButton>("m_pAuto");
    QRadioButton* const over = Child<QRadioButton>("m_pOverexposure");
    QRadioButton* const under = Child<QRadioButton>("m_pUnderexposure");
    QCheckBox* const enhanced = Child<QCheckBox>("m_pEnchanced");
    KVSlider* const strength = Child<KVSlider>("m_pWBStrength");
    KVSpinBox* const strengthSpin = Child<KVSpinBox>("spinBox");
    QGroupBox* const useTemperature = Child<QGroupBox>("m_pTemperatureContent");
    KVSpinBox* const temperature = Child<KVSpinBox>("m_pTemperature");
};

/// A panel whose job can be told to stop.
class AbortableWidget : public YDWBWidget
{
public:
    AbortableWidget() : YDWBWidget(false, nullptr, Qt::WindowFlags()) {}
    void Abort() { DataChangedFlag() = true; }
};

} // namespace

class TestYDWBWidget : public QObject
{
    Q_OBJECT

private slots:
    void ItsSlotsAreItsOwn();
    void EachFunctionKeepsItsStrength();
    void SwitchingBackToTheAutomaticOneIsAnnouncedOnce();
    void UncheckingAFunctionAnnouncesNothing_data();
    void UncheckingAFunctionAnnouncesNothing();
    void TheAdvancedCorrectionBelongsToTheAutomaticOne();
    void AModeThatThereIsNotLeavesTheChoice_data();
    void AModeThatThereIsNotLeavesTheChoice();
    void RecordsFromOutsideAreKeptAndApplied_data();
    void RecordsFromOutsideAreKeptAndApplied();
    void BalancesByTheChosenFunction_data();
    void BalancesByTheChosenFunction();
    void EnhancesStepByStep_data();
    void EnhancesStepByStep();
    void EnhancesWithinTheSelection_data();
    void EnhancesWithinTheSelection();
    void TranslucentPixelsAreEnhancedAsOpaqueOnes_data();
    void TranslucentPixelsAreEnhancedAsOpaqueOnes();
    void PlainPicturesAreStretchedBySixteenLevels_data();
    void PlainPicturesAreStretchedBySixteenLevels();
    void APictureOfEveryLevelIsNotStretched();
    void TheTemperatureHasTwoScales_data();
    void TheTemperatureHasTwoScales();
    void TheTemperatureFollowsTheBalance_data();
    void TheTemperatureFollowsTheBalance();
    void EveryPassTellsItsProgress_data();
    void EveryPassTellsItsProgress();
    void AnAbortedCorrectionYieldsItsPicture_data();
    void AnAbortedCorrectionYieldsItsPicture();
};

void TestYDWBWidget::ItsSlotsAreItsOwn()
{
    const QMetaObject& meta = YDWBWidget::staticMetaObject;
    int slotCount = 0;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() != QMetaMethod::Slot)
            continue;
        ++slotCount;
        QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
    }
    QCOMPARE(slotCount, 8);
}

void TestYDWBWidget::EachFunctionKeepsItsStrength()
{
    Fixture f;
    f.strength->setValue(35);
    f.over->setChecked(true);
    QCOMPARE(f.strength->value(), 100);
    f.strengthSpin->setValue(70);
    f.under->setChecked(true);
    QCOMPARE(f.strength->value(), 100);
    f.strength->setValue(10);
    f.automatic->setChecked(true);
    QCOMPARE(f.strength->value(), 35);
    f.over->setChecked(true);
    QCOMPARE(f.strengthSpin->value(), 70);
    const Params params = f.widget.GetValue();
    QCOMPARE(params.autoStrength, 35);
    QCOMPARE(params.overexposureStrength, 70);
    QCOMPARE(params.underexposureStrength, 10);
    QCOMPARE(params.mode, 1);
}

void TestYDWBWidget::SwitchingBackToTheAutomaticOneIsAnnouncedOnce()
{
    Fixture f;
    f.widget.SetValue(OfMode(1));
    Announcements announcements(f.widget);
    f.automatic->setChecked(true);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), OfMode(0)));
    QCOMPARE(f.strength->value(), 30);
}

void TestYDWBWidget::UncheckingAFunctionAnnouncesNothing_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("mode");
    QTest::newRow("auto") << "m_pAuto" << 0;
    QTest::newRow("overexposure") << "m_pOverexposure" << 1;
    QTest::newRow("underexposure") << "m_pUnderexposure" << 2;
}

void TestYDWBWidget::UncheckingAFunctionAnnouncesNothing()
{
    QFETCH(QString, button);
    QFETCH(int, mode);
    Fixture f;
    f.widget.SetValue(OfMode(mode));
    Announcements announcements(f.widget);
    auto* const radio = Child<QRadioButton>(f.widget, qPrintable(button));
    radio->setAutoExclusive(false); // else the last one that is checked stays so
    radio->setChecked(false);
    QVERIFY(!radio->isChecked());
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), OfMode(mode)));
}

void TestYDWBWidget::TheAdvancedCorrectionBelongsToTheAutomaticOne()
{
    Fixture f;
    f.enhanced->setChecked(true);
    f.over->setChecked(true);
    QVERIFY(!f.enhanced->isEnabled());
    QVERIFY(f.enhanced->isChecked() && f.widget.GetValue().enhanced);
    const RGBA32iImage source = TestPictures::Random(60, 40, 1);
    const KVIterativeWBTransformation rule(source, KVWBTransformation::Overexposure, 100);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ByRule(rule, source)));
    f.automatic->setChecked(true);
    QVERIFY(f.enhanced->isEnabled());
}

void TestYDWBWidget::AModeThatThereIsNotLeavesTheChoice_data()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {-1, 3, Lowest, Highest})
        QTest::addRow("%d", mode) << mode;
}

void TestYDWBWidget::AModeThatThereIsNotLeavesTheChoice()
{
    QFETCH(int, mode);
    Fixture f;
    f.over->setChecked(true);
    f.strength->setValue(45);
    f.widget.SetValue(OfMode(mode));
    QVERIFY(f.over->isChecked());
    QCOMPARE(f.strength->value(), 45);
    QCOMPARE(f.widget.GetValue().mode, mode);
    Announcements announcements(f.widget);
    f.strength->setValue(46); // belongs to no function, and is announced
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), OfMode(mode)));
    const RGBA32iImage source = TestPictures::Random(60, 40, 2);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
}

void TestYDWBWidget::RecordsFromOutsideAreKeptAndApplied_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("mode");
    for (const int number : {Lowest, -1, 101, Highest})
        for (const int mode : {0, 1, 2, 3})
            QTest::addRow("%d, mode %d", number, mode) << number << mode;
}

void TestYDWBWidget::RecordsFromOutsideAreKeptAndApplied()
{
    QFETCH(int, number);
    QFETCH(int, mode);
    Params params;
    params.mode = mode;
    params.autoStrength = params.overexposureStrength = params.underexposureStrength = number;
    params.temperature = params.temperatureStrength = number;
    params.useTemperature = true;
    const RGBA32iImage source = TestPictures::Random(60, 40, 3);
    for (const bool enhanced : {false, true}) {
        params.enhanced = enhanced;
        Fixture f;
        f.widget.SetValue(params);
        QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
        QCOMPARE(Converted(f.widget, source).Width(), 60);
    }
}

void TestYDWBWidget::BalancesByTheChosenFunction_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("strength");
    QTest::newRow("auto") << 0 << 30;
    QTest::newRow("overexposure") << 1 << 60;
    QTest::newRow("underexposure") << 2 << 90;
}

void TestYDWBWidget::BalancesByTheChosenFunction()
{
    QFETCH(int, mode);
    QFETCH(int, strength);
    const RGBA32iImage source = Photograph();
    Fixture f;
    f.widget.SetValue(OfMode(mode));
    const KVIterativeWBTransformation rule(source, KVWBTransformation::BalanceFunction(mode), strength);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ByRule(rule, source)));
}

void TestYDWBWidget::EnhancesStepByStep_data()
{
    QTest::addColumn<QByteArray>("photograph");
    QTest::addColumn<int>("strength");
    for (const char* const photograph : {"picosdeeuropa", "friends", "life"})
        for (const int strength : {0, 1, 33, 50, 100})
            QTest::addRow("%s, %d", photograph, strength) << QByteArray(photograph) << strength;
}

void TestYDWBWidget::EnhancesStepByStep()
{
    QFETCH(QByteArray, photograph);
    QFETCH(int, strength);
    const RGBA32iImage source = Photograph(photograph);
    QVERIFY(!source.IsEmpty());
    Fixture f;
    f.widget.SetValue(Enhanced(strength));
    const RGBA32iImage converted = Converted(f.widget, source);
    QVERIFY(TestPictures::AreEqual(converted, ExpectedEnhanced(source, strength, nullptr)));
    if (strength == 0)
        QVERIFY(TestPictures::AreEqual(converted, source));
    if (strength >= 33) // a per cent is rounded away
        QVERIFY(!TestPictures::AreEqual(converted, source));
}

void TestYDWBWidget::EnhancesWithinTheSelection_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<QRect>("bounds");
    QTest::newRow("inside") << QPoint(30, 40) << QRect(0, 0, 100, 80);
    QTest::newRow("a part of the mask") << QPoint(30, 40) << QRect(10, 20, 60, 30);
    QTest::newRow("left of and above the picture") << QPoint(-25, -15) << QRect(0, 0, 100, 80);
    QTest::newRow("beyond the picture's corner") << QPoint(350, 150) << QRect(0, 0, 100, 80);
    QTest::newRow("beyond the mask") << QPoint(30, 40) << QRect(0, 0, 200, 200);
    QTest::newRow("beside the picture") << QPoint(3000, 40) << QRect(0, 0, 100, 80);
    QTest::newRow("a part of the mask, left of and above the picture")
        << QPoint(-20, -30) << QRect(5, 3, 80, 70);
    QTest::newRow("a part of the mask that lies inside the picture")
        << QPoint(-20, -10) << QRect(30, 20, 50, 40);
}

void TestYDWBWidget::EnhancesWithinTheSelection()
{
    QFETCH(QPoint, offset);
    QFETCH(QRect, bounds);
    for (const char* const photograph : {"picosdeeuropa", "friends", "life"}) {
        const RGBA32iImage source = Photograph(photograph);
        const Selection selection = SelectionOf(source, offset, bounds);
        Fixture f;
        f.widget.SetValue(Enhanced(70));
        QVERIFY2(TestPictures::AreEqual(ConvertedWithin(f.widget, source, &selection),
                                        ExpectedEnhanced(source, 70, &selection)),
                 photograph);
    }
}

void TestYDWBWidget::TranslucentPixelsAreEnhancedAsOpaqueOnes_data()
{
    QTest::addColumn<bool>("isSelected");
    QTest::newRow("the whole") << false;
    QTest::newRow("a selection") << true;
}

void TestYDWBWidget::TranslucentPixelsAreEnhancedAsOpaqueOnes()
{
    QFETCH(bool, isSelected);
    const RGBA32iImage source = TestPictures::Random(300, 50, 4);
    const Selection selection = SelectionOf(source, QPoint(-20, 10), QRect(5, 3, 80, 70));
    const Selection* const selected = isSelected ? &selection : nullptr;
    Fixture f;
    f.widget.SetValue(Enhanced(60));
    const RGBA32iImage converted = ConvertedWithin(f.widget, source, selected);
    QVERIFY(TestPictures::AreEqual(converted, ExpectedEnhanced(source, 60, selected)));
    QVERIFY(!TestPictures::AreEqual(converted, source));
    for (int y = 0; y < source.Height(); ++y)
        for (int x = 0; x < source.Width(); ++x)
            QCOMPARE(converted.Row(y)[x].a, source.Row(y)[x].a);
}

void TestYDWBWidget::PlainPicturesAreStretchedBySixteenLevels_data()
{
    QTest::addColumn<int>("grey");
    QTest::addColumn<int>("stretched");
    QTest::newRow("dark") << 3 << 48;      // of 0..16
    QTest::newRow("middle") << 100 << 128; // of 92..108: the middle
    QTest::newRow("bright") << 250 << 175; // of 239..255
}

void TestYDWBWidget::PlainPicturesAreStretchedBySixteenLevels()
{
    QFETCH(int, grey);
    QFETCH(int, stretched);
    Fixture f;
    f.widget.SetValue(Enhanced(100));
    const RGBA32iImage converted = Converted(f.widget, TestPictures::Grey(40, 30, grey));
    QCOMPARE(int(converted.Row(10)[10].g), stretched);
}

/// A level alone is more than is cut off at either end.
void TestYDWBWidget::APictureOfEveryLevelIsNotStretched()
{
    const RGBA32iImage source(256, 10);
    for (int y = 0; y < source.Height(); ++y)
        for (int x = 0; x < source.Width(); ++x)
            source.Row(y)[x] = YDRGBA32i(quint8(x), quint8(x), quint8(x), 255);
    Fixture f;
    f.widget.SetValue(Enhanced(100));
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ExpectedEnhanced(source, 100, nullptr)));
    QVERIFY(TestPictures::AreEqual(ByRule(AutomaticLevels(source), source), source));
    const KVIterativeWBTransformation balance(source, KVWBTransformation::Auto, 100);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ByRule(balance, source)));
}

void TestYDWBWidget::TheTemperatureHasTwoScales_data()
{
    QTest::addColumn<int>("temperature");
    QTest::addColumn<int>("kelvin");
    QTest::newRow("coldest") << -100 << 9000;
    QTest::newRow("cold") << -1 << 6525;
    QTest::newRow("neutral") << 0 << 6500;
    QTest::newRow("warm") << 1 << 6455;
    QTest::newRow("warmest") << 100 << 2000;
    QTest::newRow("lowest number") << Lowest << Highest;
    QTest::newRow("highest number") << Highest << Lowest;
}

void TestYDWBWidget::TheTemperatureHasTwoScales()
{
    QFETCH(int, temperature);
    QFETCH(int, kelvin);
    const RGBA32iImage source = TestPictures::Random(60, 40, 5);
    Params params;
    params.autoStrength = 0;
    params.useTemperature = true;
    params.temperature = temperature;
    params.temperatureStrength = 70;
    Fixture f;
    f.widget.SetValue(params);
    const YDIterativePhotoFilterTransformation filter(YDTemperatureCorrection::GetTemperatureColor(kelvin),
                                                      70);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), ByRule(filter, source)));
}

void TestYDWBWidget::TheTemperatureFollowsTheBalance_data()
{
    QTest::addColumn<bool>("isEnhanced");
    QTest::addColumn<bool>("isSelected");
    QTest::newRow("the whole") << false << false;
    QTest::newRow("a selection") << false << true;
    QTest::newRow("the whole, enhanced") << true << false;
    QTest::newRow("a selection, enhanced") << true << true;
}

void TestYDWBWidget::TheTemperatureFollowsTheBalance()
{
    QFETCH(bool, isEnhanced);
    QFETCH(bool, isSelected);
    const RGBA32iImage source = Photograph("friends");
    const Selection selection = SelectionOf(source, QPoint(-20, 30), QRect(5, 3, 80, 70));
    const Selection* const selected = isSelected ? &selection : nullptr;
    Params params = Enhanced(60);
    params.enhanced = isEnhanced;
    params.useTemperature = true;
    params.temperature = -40; // 7500 K
    params.temperatureStrength = 70;
    Fixture f;
    f.widget.SetValue(params);
    const KVIterativeWBTransformation balance(source, KVWBTransformation::Auto, 60);
    const RGBA32iImage balanced =
        isEnhanced ? ExpectedEnhanced(source, 60, selected) : Selected(balance, source, selected);
    const YDIterativePhotoFilterTransformation filter(YDTemperatureCorrection::GetTemperatureColor(7500), 70);
    const RGBA32iImage expected = Selected(filter, balanced, selected);
    QVERIFY(TestPictures::AreEqual(ConvertedWithin(f.widget, source, selected), expected));
    QVERIFY(!TestPictures::AreEqual(expected, balanced));
}

void TestYDWBWidget::EveryPassTellsItsProgress_data()
{
    QTest::addColumn<bool>("isEnhanced");
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<bool>("isFiltered");
    QTest::addColumn<QList<int>>("passes");
    QTest::newRow("the whole") << false << false << false << QList<int>{50};
    QTest::newRow("the whole, filtered") << false << false << true << QList<int>{50, 50};
    QTest::newRow("the whole, enhanced") << true << false << false << QList<int>{50, 50};
    QTest::newRow("the whole, enhanced, filtered") << true << false << true << QList<int>{50, 50, 50};
    // Forty rows to adjust, and as many to blend.
    QTest::newRow("a selection, enhanced") << true << true << false << QList<int>{80, 80};
    QTest::newRow("a selection, enhanced, filtered") << true << true << true << QList<int>{80, 80, 80};
}

void TestYDWBWidget::EveryPassTellsItsProgress()
{
    QFETCH(bool, isEnhanced);
    QFETCH(bool, isSelected);
    QFETCH(bool, isFiltered);
    QFETCH(QList<int>, passes);
    const RGBA32iImage source = TestPictures::Random(300, 50, 6);
    const Selection selection = SelectionOf(source, QPoint(20, 5), QRect(0, 0, 80, 40));
    Params params = Enhanced(60);
    params.enhanced = isEnhanced;
    params.useTemperature = isFiltered;
    Fixture f;
    f.widget.SetValue(params);
    QList<int> begun;
    QList<int> reached;
    connect(&f.widget, &YDAdjustmentWidget::ProgressRangeChanged, this, [&](int minimum, int maximum) {
        QCOMPARE(minimum, 0);
        begun.append(maximum);
        reached.append(0);
    });
    connect(&f.widget, &YDAdjustmentWidget::ProgressValueChanged, this, [&](int value) {
        QVERIFY(!reached.isEmpty() && value > reached.last());
        reached.last() = value;
    });
    ConvertedWithin(f.widget, source, isSelected ? &selection : nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(begun, passes);
    QCOMPARE(reached, passes);
}

void TestYDWBWidget::AnAbortedCorrectionYieldsItsPicture_data()
{
    QTest::addColumn<bool>("isSelected");
    QTest::newRow("the whole") << false;
    QTest::newRow("a selection") << true;
}

void TestYDWBWidget::AnAbortedCorrectionYieldsItsPicture()
{
    QFETCH(bool, isSelected);
    const RGBA32iImage source(2500, 2000);
    const RGBA32iImage mask = isSelected ? Mask(2500, 2000) : RGBA32iImage();
    AbortableWidget widget;
    widget.SetValue(Enhanced(60));
    widget.SetImage(source, mask, QPoint(), QRect(0, 0, mask.Width(), mask.Height()));
    connect(&widget, &YDAdjustmentWidget::ProgressRangeChanged, this, [&widget] { widget.Abort(); });
    YDAdjustmentWidget::JobWatcher watcher;
    widget.StartJobWatching(&watcher);
    QTRY_VERIFY_WITH_TIMEOUT(watcher.isFinished(), PatienceMs);
    QCOMPARE(watcher.result().Width(), source.Width());
    QCOMPARE(watcher.result().Height(), source.Height());
}

QTEST_MAIN(TestYDWBWidget)
#include "tst_YDWBWidget.moc"
