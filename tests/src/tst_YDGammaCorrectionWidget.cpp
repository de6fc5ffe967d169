#include "TestPictures.h"
#include "YDGammaCorrectionWidget.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"
#include "widgets/KVDoubleSpinBox.h"
#include "widgets/KVSlider.h"

#include <QGridLayout>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

constexpr int PatienceMs = 20000;
constexpr int QuietMs = 150;

/// The rule for one level, by the pixel form.
quint8 Level(double gamma, quint8 level)
{
    YDRGBA32i pixel(level, level, level, 255);
    YDIterativeGammaCorrectionTransformation rule(gamma);
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

    /// How often each signal was emitted since the last call: host, gamma, data.
    QVector<int> Announced()
    {
        const QVector<int> counts{host.count(), gamma.count(), data.count()};
        host.clear();
        gamma.clear();
        data.clear();
        return counts;
    }

    YDGammaCorrectionWidget widget;
    KVSlider* const slider = Child<KVSlider>("m_pGammaSlider");
    KVDoubleSpinBox* const spin = Child<KVDoubleSpinBox>("m_pGammaSpin");
    QSignalSpy host{&widget, &KVAdjustmentWidget::UserParamsChanged};
    QSignalSpy gamma{&widget, &YDGammaCorrectionWidget::GammaChanged};
    QSignalSpy data{&widget, &YDAdjustmentWidget::DataChanged};
};

const QVector<int> Nothing{0, 0, 0};
const QVector<int> Once{1, 1, 1};

} // namespace

class TestYDGammaCorrectionWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void TheFormIsAsDesigned();
    void TheSliderShowsHundredths_data();
    void TheSliderShowsHundredths();
    void EveryStepOfTheSliderReachesTheSpinBoxAndIsAnnouncedOnce();
    void AChangeIsAnnouncedInOrder();
    void SettingTheGammaStartsNoPreview();
    void TheSetterShowsWhatItIsGiven_data();
    void TheSetterShowsWhatItIsGiven();
    void ResetAnnouncesOnlyRealChanges();
    void NeutralSettingsChangeNoPixel();
    void ConversionChangesThePixelsHandedIn();
    void ThePreviewEqualsTheConversion();
};

void TestYDGammaCorrectionWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDGammaCorrectionWidget"));
}

void TestYDGammaCorrectionWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Gamma correction"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Gamma correction"));
    QCOMPARE(f.widget.size(), QSize(208, 105));
    QCOMPARE(f.widget.minimumSize(), QSize(0, 0));
    QCOMPARE(f.widget.maximumSize(), QSize(16777215, 16777215));
    const auto* const grid = f.Child<QGridLayout>("gridLayout");
    const auto* const label = f.Child<QLabel>("label");
    QVERIFY(grid && f.Child<QGridLayout>("gridLayout_2") && label && f.slider && f.spin);
    QCOMPARE(grid->itemAtPosition(0, 0)->widget(), label);
    QCOMPARE(grid->itemAtPosition(0, 1)->widget(), f.slider);
    QCOMPARE(grid->itemAtPosition(0, 2)->widget(), f.spin);
    QCOMPARE(label->text(), QStringLiteral("Gamma:"));
    QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
    QCOMPARE(f.slider->orientation(), Qt::Horizontal);
    QCOMPARE(f.slider->minimum(), 1);
    QCOMPARE(f.slider->maximum(), 500);
    QCOMPARE(f.slider->singleStep(), 1);
    QCOMPARE(f.slider->pageStep(), 10);
    QCOMPARE(f.slider->value(), 100);
    QCOMPARE(f.slider->sliderPosition(), 100);
    QCOMPARE(f.slider->sizePolicy().horizontalStretch(), 0);
    QCOMPARE(f.spin->decimals(), 2);
    QCOMPARE(f.spin->minimum(), 0.01);
    QCOMPARE(f.spin->maximum(), 5.0);
    QCOMPARE(f.spin->singleStep(), 0.01);
    QCOMPARE(f.spin->value(), 1.0);
    QLayoutItem* const spacer = grid->itemAtPosition(1, 0);
    QVERIFY(spacer && spacer->spacerItem());
    QCOMPARE(spacer->sizeHint(), QSize(168, 25));
    QCOMPARE(spacer->spacerItem()->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void TestYDGammaCorrectionWidget::TheSliderShowsHundredths_data()
{
    QTest::addColumn<double>("gamma");
    QTest::addColumn<int>("position");
    QTest::newRow("default") << 1.0 << 100;
    QTest::newRow("lowest") << 0.01 << 1;
    QTest::newRow("highest") << 5.0 << 500;
    QTest::newRow("a fraction just below its step") << 0.29 << 29;
    QTest::newRow("between") << 2.5 << 250;
}

void TestYDGammaCorrectionWidget::TheSliderShowsHundredths()
{
    QFETCH(double, gamma);
    QFETCH(int, position);
    Fixture f;
    f.spin->setValue(gamma);
    QCOMPARE(f.slider->value(), position);
    QCOMPARE(f.widget.GetGamma(), gamma);
}

void TestYDGammaCorrectionWidget::EveryStepOfTheSliderReachesTheSpinBoxAndIsAnnouncedOnce()
{
    Fixture f;
    for (int position = 1; position <= 500; ++position) {
        f.slider->setValue(position);
        QCOMPARE(f.slider->value(), position);
        QCOMPARE(f.spin->text(), QLocale().toString(position / 100.0, 'f', 2));
        QCOMPARE(f.Announced(), Once);
    }
}

void TestYDGammaCorrectionWidget::AChangeIsAnnouncedInOrder()
{
    Fixture f;
    QStringList order;
    const auto note = [&order](const char* what) { order.append(QString::fromLatin1(what)); };
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this, [&] { note("host"); });
    connect(&f.widget, &YDGammaCorrectionWidget::GammaChanged, this, [&] { note("gamma"); });
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, [&] { note("data"); });
    f.spin->setValue(2.0);
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("host gamma data"));
}

void TestYDGammaCorrectionWidget::SettingTheGammaStartsNoPreview()
{
    Fixture f;
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(TestPictures::Grey(50, 50, 99), RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    f.widget.SetGamma(2.5);
    QCOMPARE(f.widget.GetGamma(), 2.5);
    QCOMPARE(f.spin->value(), 2.5);
    QCOMPARE(f.slider->value(), 250);
    QTest::qWait(QuietMs);
    QCOMPARE(f.Announced(), Nothing);
    QCOMPARE(ready.count(), 1);
    f.spin->setValue(2.0); // both are connected again, once
    QCOMPARE(f.slider->value(), 200);
    QCOMPARE(f.Announced(), Once);
    f.slider->setValue(300);
    QCOMPARE(f.widget.GetGamma(), 3.0);
    QCOMPARE(f.Announced(), Once);
}

void TestYDGammaCorrectionWidget::TheSetterShowsWhatItIsGiven_data()
{
    constexpr double Infinite = std::numeric_limits<double>::infinity();
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("gamma");
    QTest::addColumn<int>("position");
    QTest::newRow("a fraction just below its step") << 0.29 << 0.29 << 29;
    QTest::newRow("more decimals") << 1.999 << 1.99 << 199; // what the slider truncates
    QTest::newRow("more decimals, rounded down") << 1.992 << 1.99 << 199;
    QTest::newRow("zero") << 0.0 << 0.01 << 1;
    QTest::newRow("below zero") << -3.0 << 0.01 << 1;
    QTest::newRow("too high") << 5.01 << 5.0 << 500;
    QTest::newRow("far too high") << 1e300 << 5.0 << 500;
    QTest::newRow("infinite") << Infinite << 5.0 << 500;
    QTest::newRow("infinite below") << -Infinite << 0.01 << 1;
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 1.0 << 100;
}

void TestYDGammaCorrectionWidget::TheSetterShowsWhatItIsGiven()
{
    QFETCH(double, given);
    QFETCH(double, gamma);
    QFETCH(int, position);
    Fixture f;
    f.spin->setValue(3.0);
    f.widget.SetGamma(given);
    QCOMPARE(f.widget.GetGamma(), gamma);
    QCOMPARE(f.slider->value(), position);
}

void TestYDGammaCorrectionWidget::ResetAnnouncesOnlyRealChanges()
{
    Fixture f;
    f.widget.Reset();
    QCOMPARE(f.Announced(), Nothing);
    f.slider->setValue(50);
    f.Announced();
    f.widget.Reset();
    QCOMPARE(f.Announced(), Once);
    QCOMPARE(f.widget.GetGamma(), 1.0);
    QCOMPARE(f.slider->value(), 100);
}

void TestYDGammaCorrectionWidget::NeutralSettingsChangeNoPixel()
{
    Fixture f(false);
    const RGBA32iImage source = TestPictures::Random(200, 100, 3);
    RGBA32iImage image = source.DeepCopy();
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(TestPictures::AreEqual(image, source));
}

void TestYDGammaCorrectionWidget::ConversionChangesThePixelsHandedIn()
{
    Fixture f(false);
    f.widget.SetGamma(2.2);
    RGBA32iImage image = TestPictures::Grey(30, 20, 90);
    const RGBA32iImage shared = image;
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(image.SharesPixelsWith(shared));
    const quint8 expected = Level(2.2, 90);
    QVERIFY(expected != 90);
    QVERIFY(TestPictures::AreEqual(image, TestPictures::Grey(30, 20, expected)));
}

void TestYDGammaCorrectionWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Noise(700, 500);
    const RGBA32iImage mask = TestPictures::Random(300, 200, 5);
    const QRect bounds(0, 0, 300, 200);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetGamma(0.4);
    f.widget.SetImage(source, mask, QPoint(-50, 400), bounds);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 400), bounds);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
}

QTEST_MAIN(TestYDGammaCorrectionWidget)
#include "tst_YDGammaCorrectionWidget.moc"
