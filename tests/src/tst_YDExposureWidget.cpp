#include "PanelKit.h"
#include "TestPictures.h"
#include "YDExposureWidget.h"
#include "image/YDIterativeExposureTransformation.h"
#include "widgets/KVDoubleSpinBox.h"
#include "widgets/KVSlider.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

using namespace PanelKit;

constexpr double Infinite = std::numeric_limits<double>::infinity();
const double NotANumber = std::numeric_limits<double>::quiet_NaN();

/// A widget of the adjustment, its controls and what it announces.
struct Fixture : Panel<YDExposureWidget>
{
    using Panel::Panel;

    /// How often each signal was emitted since the last call: host, exposure, offset, data.
    QVector<int> Announced()
    {
        const QVector<int> counts{host.count(), exposure.count(), offset.count(), data.count()};
        host.clear();
        exposure.clear();
        offset.clear();
        data.clear();
        return counts;
    }

    KVSlider* const exposureSlider = Child<KVSlider>("m_pExposureSlider");
    KVDoubleSpinBox* const exposureSpin = Child<KVDoubleSpinBox>("m_pExposureSpin");
    KVSlider* const offsetSlider = Child<KVSlider>("m_pOffsetSlider");
    KVDoubleSpinBox* const offsetSpin = Child<KVDoubleSpinBox>("m_pOffsetSpin");
    QSignalSpy host{&widget, &KVAdjustmentWidget::UserParamsChanged};
    QSignalSpy exposure{&widget, &YDExposureWidget::ExposureChanged};
    QSignalSpy offset{&widget, &YDExposureWidget::OffsetChanged};
    QSignalSpy data{&widget, &YDAdjustmentWidget::DataChanged};
};

const QVector<int> Nothing{0, 0, 0, 0};
const QVector<int> OffsetOnce{1, 0, 1, 1};

} // namespace

class TestYDExposureWidget : public QObject
{
    Q_OBJECT

private slots:
    void SlidersAreTenThousandthsTruncatedTowardZero_data();
    void SlidersAreTenThousandthsTruncatedTowardZero();
    void TheOffsetsSliderBringsItsTruncatedViewIntoTheValue();
    void SettingTheExposureAnnouncesOnceForEachConnection();
    void TheExposuresSliderBringsItsTruncatedViewIntoTheValue();
    void SettingTheSameExposureAnnouncesNothing();
    void SettersShowWhatTheyAreGiven_data();
    void SettersShowWhatTheyAreGiven();
    void ConversionChangesThePixelsHandedIn();
};

void TestYDExposureWidget::SlidersAreTenThousandthsTruncatedTowardZero_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("position");
    QTest::newRow("exposure, positive") << "Exposure" << 1.5 << 15000;
    QTest::newRow("exposure, negative") << "Exposure" << -1.5 << -14999;
    QTest::newRow("exposure, a fraction just below its step") << "Exposure" << 0.0003 << 3;
    QTest::newRow("exposure, a step below zero") << "Exposure" << -0.0001 << 0;
    QTest::newRow("exposure, highest") << "Exposure" << 20.0 << 200000;
    QTest::newRow("exposure, lowest") << "Exposure" << -20.0 << -199999;
    QTest::newRow("offset, positive") << "Offset" << 0.25 << 2500;
    QTest::newRow("offset, negative") << "Offset" << -0.25 << -2499;
    QTest::newRow("offset, highest") << "Offset" << 0.5 << 5000;
}

void TestYDExposureWidget::SlidersAreTenThousandthsTruncatedTowardZero()
{
    QFETCH(QString, name);
    QFETCH(double, value);
    QFETCH(int, position);
    Fixture f;
    auto* const spin = f.widget.findChild<KVDoubleSpinBox*>(QStringLiteral("m_p%1Spin").arg(name));
    const auto* const slider = f.widget.findChild<KVSlider*>(QStringLiteral("m_p%1Slider").arg(name));
    spin->setValue(value);
    QCOMPARE(slider->value(), position);
    QCOMPARE(spin->value(), value);
}

/// It is connected while the offset is set, and the spin box's own slot is not.
void TestYDExposureWidget::TheOffsetsSliderBringsItsTruncatedViewIntoTheValue()
{
    Fixture f;
    f.widget.SetOffset(-0.25);
    QCOMPARE(f.offsetSlider->value(), -2499);
    QCOMPARE(f.widget.GetOffset(), -0.2499);
    f.widget.SetOffset(-0.25); // the slider stands there already and says nothing
    QCOMPARE(f.offsetSlider->value(), -2499);
    QCOMPARE(f.widget.GetOffset(), -0.25);
    QCOMPARE(f.Announced(), Nothing);
}

void TestYDExposureWidget::SettingTheExposureAnnouncesOnceForEachConnection()
{
    Fixture f;
    const auto exposureTimes = [](int times) { return QVector<int>{times, times, 0, times}; };
    f.widget.SetExposure(-1.5); // connected at the start and before the value is set
    QCOMPARE(f.widget.GetExposure(), -1.5);
    QCOMPARE(f.exposureSlider->value(), -14999);
    QCOMPARE(f.Announced(), exposureTimes(2));
    f.exposureSpin->setValue(1.0); // and after it
    QCOMPARE(f.Announced(), exposureTimes(3));
    f.exposureSlider->setValue(20000);
    QCOMPARE(f.widget.GetExposure(), 2.0);
    QCOMPARE(f.Announced(), exposureTimes(3));
    f.widget.SetExposure(0.5);
    QCOMPARE(f.Announced(), exposureTimes(4));
    f.exposureSpin->setValue(1.0);
    QCOMPARE(f.Announced(), exposureTimes(5));
    f.offsetSpin->setValue(0.1);
    QCOMPARE(f.Announced(), OffsetOnce);
}

/// All stay connected while the exposure is set: what the spin box rounds up is announced, and then what the
/// slider truncates.
void TestYDExposureWidget::TheExposuresSliderBringsItsTruncatedViewIntoTheValue()
{
    Fixture f;
    QVector<double> told;
    connect(&f.widget, &YDExposureWidget::ExposureChanged, this,
            [&] { told.append(f.widget.GetExposure()); });
    f.widget.SetExposure(0.12345);
    QCOMPARE(told, QVector<double>({0.1235, 0.1235, 0.1234, 0.1234})); // connected twice
    QCOMPARE(f.Announced(), (QVector<int>{4, 4, 0, 4}));
    QCOMPARE(f.widget.GetExposure(), 0.1234);
    QCOMPARE(f.exposureSlider->value(), 1234);
}

void TestYDExposureWidget::SettingTheSameExposureAnnouncesNothing()
{
    Fixture f;
    f.widget.SetExposure(0.0);
    QCOMPARE(f.Announced(), Nothing);
    f.exposureSpin->setValue(1.0);
    QCOMPARE(f.Announced(), (QVector<int>{3, 3, 0, 3}));
}

void TestYDExposureWidget::SettersShowWhatTheyAreGiven_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("exposure");
    QTest::addColumn<int>("exposurePosition");
    QTest::addColumn<double>("offset");
    QTest::addColumn<int>("offsetPosition");
    QTest::newRow("a fraction") << 0.0003 << 0.0003 << 3 << 0.0003 << 3;
    QTest::newRow("below zero") << -0.125 << -0.125 << -1249 << -0.1249 << -1249;
    QTest::newRow("more decimals") << 0.12345 << 0.1234 << 1234 << 0.1234 << 1234;
    QTest::newRow("more decimals, rounded down") << 0.12344 << 0.1234 << 1234 << 0.1234 << 1234;
    QTest::newRow("more decimals below zero") << -0.12346 << -0.1235 << -1234 << -0.1234 << -1234;
    QTest::newRow("more decimals below zero, rounded up") << -0.12342 << -0.1234 << -1234 << -0.1234 << -1234;
    QTest::newRow("too high") << 21.0 << 20.0 << 200000 << 0.5 << 5000;
    QTest::newRow("too low") << -21.0 << -20.0 << -200000 << -0.5 << -5000;
    QTest::newRow("far too high") << 1e300 << 20.0 << 200000 << 0.5 << 5000;
    QTest::newRow("far too low") << -1e300 << -20.0 << -200000 << -0.5 << -5000;
    QTest::newRow("infinite") << Infinite << 20.0 << 200000 << 0.5 << 5000;
    QTest::newRow("infinite below") << -Infinite << -20.0 << -200000 << -0.5 << -5000;
    QTest::newRow("not a number") << NotANumber << 0.0 << 0 << 0.0 << 0;
}

void TestYDExposureWidget::SettersShowWhatTheyAreGiven()
{
    QFETCH(double, given);
    QFETCH(double, exposure);
    QFETCH(int, exposurePosition);
    QFETCH(double, offset);
    QFETCH(int, offsetPosition);
    Fixture f;
    f.exposureSpin->setValue(3.0);
    f.offsetSpin->setValue(0.3);
    f.widget.SetExposure(given);
    f.widget.SetOffset(given);
    QCOMPARE(f.widget.GetExposure(), exposure);
    QCOMPARE(f.exposureSlider->value(), exposurePosition);
    QCOMPARE(f.widget.GetOffset(), offset);
    QCOMPARE(f.offsetSlider->value(), offsetPosition);
}

void TestYDExposureWidget::ConversionChangesThePixelsHandedIn()
{
    Fixture f(false);
    f.exposureSpin->setValue(1.25);
    f.offsetSpin->setValue(-0.01);
    RGBA32iImage image = TestPictures::Grey(30, 20, 90);
    const RGBA32iImage shared = image;
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(image.SharesPixelsWith(shared));
    const RGBA32iImage source = TestPictures::Grey(30, 20, 90);
    QVERIFY(TestPictures::AreEqual(image, ByRule(YDIterativeExposureTransformation(1.25, -0.01), source)));
    QVERIFY(!TestPictures::AreEqual(image, source));
}

QTEST_MAIN(TestYDExposureWidget)
#include "tst_YDExposureWidget.moc"
