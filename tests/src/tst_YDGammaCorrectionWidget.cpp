#include "PanelKit.h"
#include "TestPictures.h"
#include "YDGammaCorrectionWidget.h"
#include "image/YDIterativeGammaCorrectionTransformation.h"
#include "widgets/KVDoubleSpinBox.h"
#include "widgets/KVSlider.h"

#include <QTest>

#include <limits>

namespace {

using namespace PanelKit;

struct Fixture : Panel<YDGammaCorrectionWidget>
{
    using Panel::Panel;

    KVSlider* const slider = Child<KVSlider>("m_pGammaSlider");
    KVDoubleSpinBox* const spin = Child<KVDoubleSpinBox>("m_pGammaSpin");
    Announcements told{widget, &YDGammaCorrectionWidget::GammaChanged, "gamma"};
};

} // namespace

class TestYDGammaCorrectionWidget : public QObject
{
    Q_OBJECT

private slots:
    void TheSliderShowsHundredths_data();
    void TheSliderShowsHundredths();
    void EveryStepOfTheSliderReachesTheSpinBoxAndIsAnnouncedOnce();
    void TheSetterShowsWhatItIsGiven_data();
    void TheSetterShowsWhatItIsGiven();
    void ConversionChangesThePixelsHandedIn();
};

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
        QCOMPARE(f.told.Take(), QStringLiteral("host gamma data"));
    }
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

void TestYDGammaCorrectionWidget::ConversionChangesThePixelsHandedIn()
{
    Fixture f(false);
    f.widget.SetGamma(2.2);
    RGBA32iImage image = TestPictures::Grey(30, 20, 90);
    const RGBA32iImage shared = image;
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(image.SharesPixelsWith(shared));
    const RGBA32iImage source = TestPictures::Grey(30, 20, 90);
    QVERIFY(TestPictures::AreEqual(image, ByRule(YDIterativeGammaCorrectionTransformation(2.2), source)));
    QVERIFY(!TestPictures::AreEqual(image, source));
}

QTEST_MAIN(TestYDGammaCorrectionWidget)
#include "tst_YDGammaCorrectionWidget.moc"
