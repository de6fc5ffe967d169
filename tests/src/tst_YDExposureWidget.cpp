#include "TestPictures.h"
#include "YDExposureWidget.h"
#include "image/YDIterativeExposureTransformation.h"
#include "widgets/KVDoubleSpinBox.h"
#include "widgets/KVSlider.h"

#include <QGridLayout>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

constexpr int PatienceMs = 20000;
constexpr double Infinite = std::numeric_limits<double>::infinity();
const double NotANumber = std::numeric_limits<double>::quiet_NaN();

/// The rule for one level, by the pixel form.
quint8 Level(double exposure, double offset, quint8 level)
{
    YDRGBA32i pixel(level, level, level, 255);
    YDIterativeExposureTransformation rule(exposure, offset);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel.g;
}

/// A widget of the adjustment, its controls and what it announces.
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

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

    YDExposureWidget widget;
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
const QVector<int> ExposureOnce{1, 1, 0, 1};
const QVector<int> OffsetOnce{1, 0, 1, 1};

} // namespace

class TestYDExposureWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void SlidersAreTenThousandthsTruncatedTowardZero_data();
    void SlidersAreTenThousandthsTruncatedTowardZero();
    void DraggingASliderSetsTheSpinBoxAndAnnouncesOnce_data();
    void DraggingASliderSetsTheSpinBoxAndAnnouncesOnce();
    void AChangeIsAnnouncedInOrder();
    void SettingTheOffsetAnnouncesNothing();
    void TheOffsetsSliderBringsItsTruncatedViewIntoTheValue();
    void SettingTheExposureAnnouncesOnceForEachConnection();
    void TheExposuresSliderBringsItsTruncatedViewIntoTheValue();
    void SettingTheSameExposureAnnouncesNothing();
    void SettersShowWhatTheyAreGiven_data();
    void SettersShowWhatTheyAreGiven();
    void ResetAnnouncesOnlyRealChanges();
    void NeutralSettingsChangeNoPixel();
    void ConversionChangesThePixelsHandedIn();
    void ThePreviewEqualsTheConversion();
};

void TestYDExposureWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDExposureWidget"));
}

void TestYDExposureWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Exposure correction"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Exposure correction"));
    QCOMPARE(f.widget.size(), QSize(212, 93));
    QCOMPARE(f.widget.minimumSize(), QSize(0, 0));
    QCOMPARE(f.widget.maximumSize(), QSize(16777215, 16777215));
    const auto* const grid = f.Child<QGridLayout>("gridLayout");
    QVERIFY(grid && f.Child<QGridLayout>("gridLayout_2"));
    struct Row
    {
        const char* label;
        const char* text;
        KVSlider* slider;
        KVDoubleSpinBox* spin;
        int maximum;
        int singleStep;
        int pageStep;
    };
    int row = 0;
    for (const Row& each : {Row{"label", "Exposure:", f.exposureSlider, f.exposureSpin, 200000, 1000, 10000},
                            Row{"label_2", "Offset:", f.offsetSlider, f.offsetSpin, 5000, 10, 100}}) {
        const auto* const label = f.Child<QLabel>(each.label);
        QVERIFY(label && each.slider && each.spin);
        QCOMPARE(grid->itemAtPosition(row, 0)->widget(), label);
        QCOMPARE(grid->itemAtPosition(row, 1)->widget(), each.slider);
        QCOMPARE(grid->itemAtPosition(row, 2)->widget(), each.spin);
        QCOMPARE(label->text(), QString::fromLatin1(each.text));
        QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        QCOMPARE(each.slider->orientation(), Qt::Horizontal);
        QCOMPARE(each.slider->minimum(), -each.maximum);
        QCOMPARE(each.slider->maximum(), each.maximum);
        QCOMPARE(each.slider->singleStep(), each.singleStep);
        QCOMPARE(each.slider->pageStep(), each.pageStep);
        QCOMPARE(each.slider->value(), 0);
        QCOMPARE(each.spin->decimals(), 4);
        QCOMPARE(each.spin->minimum(), -each.maximum / 10000.0);
        QCOMPARE(each.spin->maximum(), each.maximum / 10000.0);
        QCOMPARE(each.spin->singleStep(), 0.001);
        QCOMPARE(each.spin->value(), 0.0);
        ++row;
    }
    QLayoutItem* const spacer = grid->itemAtPosition(2, 0);
    QVERIFY(spacer && spacer->spacerItem());
    QCOMPARE(spacer->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

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

void TestYDExposureWidget::DraggingASliderSetsTheSpinBoxAndAnnouncesOnce_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("position");
    QTest::addColumn<double>("value");
    QTest::addColumn<QVector<int>>("announced");
    QTest::newRow("exposure") << "Exposure" << 12345 << 1.2345 << ExposureOnce;
    QTest::newRow("exposure, negative") << "Exposure" << -12345 << -1.2345 << ExposureOnce;
    QTest::newRow("offset") << "Offset" << 1234 << 0.1234 << OffsetOnce;
    QTest::newRow("offset, lowest") << "Offset" << -5000 << -0.5 << OffsetOnce;
}

void TestYDExposureWidget::DraggingASliderSetsTheSpinBoxAndAnnouncesOnce()
{
    QFETCH(QString, name);
    QFETCH(int, position);
    QFETCH(double, value);
    QFETCH(QVector<int>, announced);
    Fixture f;
    f.widget.findChild<KVSlider*>(QStringLiteral("m_p%1Slider").arg(name))->setValue(position);
    QCOMPARE(f.widget.findChild<KVDoubleSpinBox*>(QStringLiteral("m_p%1Spin").arg(name))->value(), value);
    QCOMPARE(f.Announced(), announced);
}

void TestYDExposureWidget::AChangeIsAnnouncedInOrder()
{
    Fixture f;
    QStringList order;
    const auto note = [&order](const char* what) { order.append(QString::fromLatin1(what)); };
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this, [&] { note("host"); });
    connect(&f.widget, &YDExposureWidget::ExposureChanged, this, [&] { note("exposure"); });
    connect(&f.widget, &YDExposureWidget::OffsetChanged, this, [&] { note("offset"); });
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, [&] { note("data"); });
    f.exposureSpin->setValue(1.0);
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("host exposure data"));
    order.clear();
    f.offsetSpin->setValue(0.1);
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("host offset data"));
}

void TestYDExposureWidget::SettingTheOffsetAnnouncesNothing()
{
    Fixture f;
    f.widget.SetOffset(0.25);
    QCOMPARE(f.widget.GetOffset(), 0.25);
    QCOMPARE(f.offsetSpin->value(), 0.25);
    QCOMPARE(f.offsetSlider->value(), 2500);
    QCOMPARE(f.Announced(), Nothing);
    f.offsetSpin->setValue(0.1); // both are connected again, once
    QCOMPARE(f.offsetSlider->value(), 1000);
    QCOMPARE(f.Announced(), OffsetOnce);
    f.offsetSlider->setValue(2000);
    QCOMPARE(f.widget.GetOffset(), 0.2);
    QCOMPARE(f.Announced(), OffsetOnce);
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

void TestYDExposureWidget::ResetAnnouncesOnlyRealChanges()
{
    Fixture f;
    f.widget.Reset();
    QCOMPARE(f.Announced(), Nothing);
    f.exposureSlider->setValue(5000);
    f.offsetSlider->setValue(-400);
    f.Announced();
    f.widget.Reset();
    QCOMPARE(f.Announced(), (QVector<int>{2, 1, 1, 2}));
    QCOMPARE(f.widget.GetExposure(), 0.0);
    QCOMPARE(f.exposureSlider->value(), 0);
    QCOMPARE(f.widget.GetOffset(), 0.0);
    QCOMPARE(f.offsetSlider->value(), 0);
}

void TestYDExposureWidget::NeutralSettingsChangeNoPixel()
{
    Fixture f(false);
    const RGBA32iImage source = TestPictures::Random(200, 100, 3);
    RGBA32iImage image = source.DeepCopy();
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(image, source));
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
    const quint8 expected = Level(1.25, -0.01, 90);
    QVERIFY(expected != 90);
    QVERIFY(TestPictures::AreEqual(image, TestPictures::Grey(30, 20, expected)));
}

void TestYDExposureWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Noise(700, 500);
    const RGBA32iImage mask = TestPictures::Random(300, 200, 5);
    const QRect bounds(0, 0, 300, 200);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.exposureSpin->setValue(-0.7);
    f.offsetSpin->setValue(0.02);
    f.widget.SetImage(source, mask, QPoint(-50, 400), bounds);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 400), bounds);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
}

QTEST_MAIN(TestYDExposureWidget)
#include "tst_YDExposureWidget.moc"
