#include "AdjustmentProbe.h"
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
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>
#include <limits>

using namespace AdjustmentProbe;

namespace {

constexpr int Lowest = std::numeric_limits<int>::min();
constexpr int Highest = std::numeric_limits<int>::max();
constexpr int PatienceMs = 20000;
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
struct Fixture
{
    explicit Fixture(bool isDialog = false) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    YDWBWidget widget;
    QRadioButton* const automatic = Child<QRadioButton>(widget, "m_pAuto");
    QRadioButton* const over = Child<QRadioButton>(widget, "m_pOverexposure");
    QRadioButton* const under = Child<QRadioButton>(widget, "m_pUnderexposure");
    QCheckBox* const enhanced = Child<QCheckBox>(widget, "m_pEnchanced");
    KVSlider* const strength = Child<KVSlider>(widget, "m_pWBStrength");
    KVSpinBox* const strengthSpin = Child<KVSpinBox>(widget, "spinBox");
    QGroupBox* const useTemperature = Child<QGroupBox>(widget, "m_pTemperatureContent");
    KVSlider* const temperatureSlider = Child<KVSlider>(widget, "TemperatureSlider");
    KVSpinBox* const temperature = Child<KVSpinBox>(widget, "m_pTemperature");
    KVSlider* const densitySlider = Child<KVSlider>(widget, "slider_2");
    KVSpinBox* const density = Child<KVSpinBox>(widget, "m_pTempStrength");
};

/// A panel whose job can be told to stop.
class AbortableWidget : public YDWBWidget
{
public:
    AbortableWidget() : YDWBWidget(false, nullptr, Qt::WindowFlags()) {}
    void Abort() { DataChangedFlag() = true; }
};

} // namespace

Q_DECLARE_METATYPE(Params)

class TestYDWBWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void TheMainControlsAreInTheirRows();
    void TheSlidersRunFromLeftToRight();
    void ItsSlotsAreItsOwn();
    void OpensWithItsDefaults();
    void EachFunctionKeepsItsStrength();
    void AChangeIsStoredAndAnnouncedOnce_data();
    void AChangeIsStoredAndAnnouncedOnce();
    void SwitchingBackToTheAutomaticOneIsAnnouncedOnce();
    void UncheckingAFunctionAnnouncesNothing_data();
    void UncheckingAFunctionAnnouncesNothing();
    void TheAdvancedCorrectionBelongsToTheAutomaticOne();
    void SettingARecordAnnouncesNothing_data();
    void SettingARecordAnnouncesNothing();
    void AModeThatThereIsNotLeavesTheChoice_data();
    void AModeThatThereIsNotLeavesTheChoice();
    void ResetAnnouncesOnce();
    void TheStreamHasEightFields();
    void AStreamThatCannotBeReadGivesDefaultsAndOneLine();
    void AnotherTagIsRefused_data();
    void AnotherTagIsRefused();
    void ReadAndWriteTellWhetherTheySucceeded();
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
    void ThePreviewEqualsTheConversion();
};

void TestYDWBWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDWBWidget"));
}

void TestYDWBWidget::TheFormIsAsDesigned()
{
    for (const bool isDialog : {false, true}) {
        Fixture f(isDialog);
        QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Picture corection"));
        QCOMPARE(Child<QGroupBox>(f.widget, "groupBox")->title(), QStringLiteral("Main"));
        QCOMPARE(f.automatic->text(), QStringLiteral("Auto correction"));
        QCOMPARE(f.enhanced->text(), QStringLiteral("Advanced correction"));
        QCOMPARE(f.over->text(), QStringLiteral("Overexposure correction"));
        QCOMPARE(f.under->text(), QStringLiteral("Underexposure correction"));
        QCOMPARE(Child<QLabel>(f.widget, "label_9")->text(), QStringLiteral("Power of correction:"));
        QCOMPARE(f.useTemperature->title(), QStringLiteral("Advanced"));
        QVERIFY(f.useTemperature->isCheckable());
        QCOMPARE(Child<QLabel>(f.widget, "label_8")->text(), QStringLiteral("Temperature:"));
        QCOMPARE(Child<QLabel>(f.widget, "label_6")->text(), QStringLiteral("Strength:"));
        QCOMPARE(f.temperatureSlider->tickInterval(), 10);
        QCOMPARE(f.temperatureSlider->tickPosition(), QSlider::NoTicks);
        QVERIFY(f.temperature->suffix().isEmpty() && f.temperature->toolTip().isEmpty());
        const auto hasRange = [](const auto* control, int minimum, int maximum) {
            return control->minimum() == minimum && control->maximum() == maximum;
        };
        QVERIFY(hasRange(f.strength, 0, 100) && hasRange(f.strengthSpin, 0, 100));
        QVERIFY(hasRange(f.temperatureSlider, -100, 100) && hasRange(f.temperature, -100, 100));
        QVERIFY(hasRange(f.densitySlider, 0, 100) && hasRange(f.density, 0, 100));
    }
}

void TestYDWBWidget::TheMainControlsAreInTheirRows()
{
    Fixture f;
    const auto* const grid = qobject_cast<QGridLayout*>(Child<QGroupBox>(f.widget, "groupBox")->layout());
    QVERIFY(grid);
    CheckButton<QRadioButton>(f.widget, *grid, 0, 0, 4, "m_pAuto", "Auto correction");
    CheckButton<QCheckBox>(f.widget, *grid, 1, 1, 3, "m_pEnchanced", "Advanced correction");
    CheckButton<QRadioButton>(f.widget, *grid, 3, 0, 4, "m_pOverexposure", "Overexposure correction");
    CheckButton<QRadioButton>(f.widget, *grid, 5, 0, 4, "m_pUnderexposure", "Underexposure correction");
    QLayoutItem* const indent = grid->itemAtPosition(1, 0);
    QVERIFY(indent && indent->spacerItem());
    QCOMPARE(indent->sizeHint(), QSize(20, 20));
    QCOMPARE(indent->minimumSize(), QSize(20, 20));
    QLayoutItem* const row = grid->itemAtPosition(7, 0);
    QVERIFY(row);
    const QList<QWidget*> power{Child<QLabel>(f.widget, "label_9"), f.strength, f.strengthSpin};
    auto* const line = qobject_cast<QHBoxLayout*>(row->layout());
    QVERIFY(line);
    QCOMPARE(line->count(), power.size());
    for (int i = 0; i < power.size(); ++i)
        QCOMPARE(line->itemAt(i)->widget(), power[i]);
}

void TestYDWBWidget::TheSlidersRunFromLeftToRight()
{
    Fixture f;
    for (const KVSlider* const slider : {f.strength, f.temperatureSlider, f.densitySlider}) {
        QCOMPARE(slider->orientation(), Qt::Horizontal);
        QVERIFY(!slider->invertedAppearance());
    }
}

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

void TestYDWBWidget::OpensWithItsDefaults()
{
    Fixture f;
    QVERIFY(f.automatic->isChecked() && !f.over->isChecked() && !f.under->isChecked());
    QVERIFY(!f.enhanced->isChecked() && f.enhanced->isEnabled());
    QCOMPARE(f.strength->value(), 50);
    QCOMPARE(f.strengthSpin->value(), 50);
    QVERIFY(!f.useTemperature->isChecked());
    QCOMPARE(f.temperature->value(), 0);
    QCOMPARE(f.density->value(), 50);
    QCOMPARE(f.densitySlider->value(), 50);
    const Params params = f.widget.GetValue();
    QVERIFY(!params.enhanced && !params.useTemperature);
    QCOMPARE(params.autoStrength, 50);
    QCOMPARE(params.overexposureStrength, 100);
    QCOMPARE(params.underexposureStrength, 100);
    QCOMPARE(params.mode, 0);
    QCOMPARE(params.temperature, 0);
    QCOMPARE(params.temperatureStrength, 50);
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

void TestYDWBWidget::AChangeIsStoredAndAnnouncedOnce_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<Params>("expected");
    Params params;
    params.autoStrength = 30;
    QTest::newRow("strength slider") << "m_pWBStrength"
                                     << "value" << QVariant(30) << params;
    QTest::newRow("strength spin box") << "spinBox"
                                       << "value" << QVariant(30) << params;
    params = Params();
    params.mode = 1;
    QTest::newRow("overexposure") << "m_pOverexposure"
                                  << "checked" << QVariant(true) << params;
    params.mode = 2;
    QTest::newRow("underexposure") << "m_pUnderexposure"
                                   << "checked" << QVariant(true) << params;
    params = Params();
    params.enhanced = true;
    QTest::newRow("advanced correction") << "m_pEnchanced"
                                         << "checked" << QVariant(true) << params;
    params = Params();
    params.useTemperature = true;
    QTest::newRow("filter") << "m_pTemperatureContent"
                            << "checked" << QVariant(true) << params;
    params = Params();
    params.temperature = -40;
    QTest::newRow("temperature slider") << "TemperatureSlider"
                                        << "value" << QVariant(-40) << params;
    QTest::newRow("temperature spin box") << "m_pTemperature"
                                          << "value" << QVariant(-40) << params;
    params = Params();
    params.temperatureStrength = 20;
    QTest::newRow("density slider") << "slider_2"
                                    << "value" << QVariant(20) << params;
    QTest::newRow("density spin box") << "m_pTempStrength"
                                      << "value" << QVariant(20) << params;
}

void TestYDWBWidget::AChangeIsStoredAndAnnouncedOnce()
{
    QFETCH(QString, control);
    QFETCH(QString, property);
    QFETCH(QVariant, value);
    QFETCH(Params, expected);
    Fixture f;
    Announcements<YDWBWidget> announcements(f.widget);
    Child<QWidget>(f.widget, qPrintable(control))->setProperty(qPrintable(property), value);
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), expected));
}

void TestYDWBWidget::SwitchingBackToTheAutomaticOneIsAnnouncedOnce()
{
    Fixture f;
    f.widget.SetValue(OfMode(1));
    Announcements<YDWBWidget> announcements(f.widget);
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
    Announcements<YDWBWidget> announcements(f.widget);
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

void TestYDWBWidget::SettingARecordAnnouncesNothing_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("strength");
    QTest::newRow("auto") << 0 << 30;
    QTest::newRow("overexposure") << 1 << 60;
    QTest::newRow("underexposure") << 2 << 90;
}

void TestYDWBWidget::SettingARecordAnnouncesNothing()
{
    QFETCH(int, mode);
    QFETCH(int, strength);
    Fixture f;
    Announcements<YDWBWidget> announcements(f.widget);
    Params params = OfMode(mode);
    params.enhanced = true;
    params.useTemperature = true;
    params.temperature = -70;
    params.temperatureStrength = 20;
    f.widget.SetValue(params);
    QCOMPARE(announcements.Take(), QString());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), params));
    QCOMPARE(f.automatic->isChecked(), mode == 0);
    QCOMPARE(f.over->isChecked(), mode == 1);
    QCOMPARE(f.under->isChecked(), mode == 2);
    QCOMPARE(f.strength->value(), strength);
    QVERIFY(f.enhanced->isChecked());
    QVERIFY(f.useTemperature->isChecked());
    QCOMPARE(f.temperatureSlider->value(), -70);
    QCOMPARE(f.densitySlider->value(), 20);
    f.strength->setValue(strength + 1); // the slots are connected again
    QCOMPARE(announcements.Take(), OneChange());
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
    Announcements<YDWBWidget> announcements(f.widget);
    f.strength->setValue(46); // belongs to no function, and is announced
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), OfMode(mode)));
    const RGBA32iImage source = TestPictures::Random(60, 40, 2);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
}

void TestYDWBWidget::ResetAnnouncesOnce()
{
    Fixture f;
    Params params = OfMode(2);
    params.enhanced = params.useTemperature = true;
    params.temperature = 80;
    f.widget.SetValue(params);
    Announcements<YDWBWidget> announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QVERIFY(f.automatic->isChecked());
    QCOMPARE(f.strength->value(), 50);
}

void TestYDWBWidget::TheStreamHasEightFields()
{
    Params params = OfMode(2);
    params.enhanced = true;
    params.temperature = -7;
    params.temperatureStrength = 8;
    QByteArray expected("KVWhiteBalance 1.00000\x01");
    expected += Bytes("", {30, 60, 90, 2}) + QByteArray(1, '\0') + Bytes("", {-7, 8});
    QCOMPARE(Written(params), expected);
    QDataStream stream(expected);
    Params read;
    stream >> read;
    QVERIFY(YDRecord::Equal(read, params));
    QVERIFY(stream.atEnd());
}

void TestYDWBWidget::AStreamThatCannotBeReadGivesDefaultsAndOneLine()
{
    const QByteArray whole = Written(OfMode(2));
    for (int length = 0; length < whole.size(); ++length) {
        QDataStream stream(whole.left(length));
        Params params = OfMode(1);
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                             "^\\[src/YDWBWidget:[0-9]+\\] Read WB data error\\.$")));
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
    }
    QDataStream readOnly(QByteArray(100, 'x'));
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                         "^\\[src/YDWBWidget:[0-9]+\\] Write WB data error\\.$")));
    readOnly << Params();
}

void TestYDWBWidget::AnotherTagIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray whole = Written(OfMode(2));
    QTest::newRow("another tag") << QByteArray(whole).replace("KVWhite", "KVwhite");
    QTest::newRow("another version") << QByteArray(whole).replace("1.00000", "1.00001");
}

void TestYDWBWidget::AnotherTagIsRefused()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytes.size(), Written(Params()).size());
    Params params;
    QDataStream asked(bytes);
    QVERIFY(!params.Read(asked));
    QDataStream stream(bytes);
    params = OfMode(1);
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral(
                                         "^\\[src/YDWBWidget:[0-9]+\\] Read WB data error\\.$")));
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Params()));
}

void TestYDWBWidget::ReadAndWriteTellWhetherTheySucceeded()
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY(OfMode(2).Write(out));
    QCOMPARE(bytes, Written(OfMode(2)));
    Params params;
    QDataStream in(bytes);
    QVERIFY(params.Read(in));
    QVERIFY(YDRecord::Equal(params, OfMode(2)));
    QDataStream cut(bytes.left(bytes.size() - 1));
    QVERIFY(!params.Read(cut));
    QVERIFY(!params.Write(in)); // opened for reading only
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

void TestYDWBWidget::ThePreviewEqualsTheConversion()
{
    const RGBA32iImage source = Photograph();
    for (const bool enhanced : {false, true}) {
        Params params = Enhanced(80);
        params.enhanced = enhanced;
        params.useTemperature = true;
        params.temperature = 60;
        Fixture f(true);
        f.widget.SetValue(params);
        QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
        const RGBA32iImage untouched = source.DeepCopy();
        f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
        QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Converted(f.widget, source)));
        QVERIFY(TestPictures::AreEqual(source, untouched));
    }
}

QTEST_MAIN(TestYDWBWidget)
#include "tst_YDWBWidget.moc"
