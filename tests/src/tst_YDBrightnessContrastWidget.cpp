#include "PanelKit.h"
#include "TestPictures.h"
#include "YDBrightnessContrastWidget.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

namespace {

using namespace PanelKit;

using Params = YDBrightnessContrastWidget::Params;

Params Record(int brightness, int contrast)
{
    Params params;
    params.brightness = brightness;
    params.contrast = contrast;
    return params;
}

RGBA32iImage Ramp(int width, int height)
{
    const RGBA32iImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.Row(y)[x] = YDRGBA32i(quint8(x), quint8(y), quint8(x + y), quint8(255 - x));
    return image;
}

/// The rule for one level, by the pixel form.
quint8 Level(int brightness, int contrast, quint8 level)
{
    YDRGBA32i pixel(level, level, level, 17);
    YDIterativeBrightnessContrastTransformation rule(brightness, contrast);
    rule.SetProcessingBuffer(&pixel);
    rule.ProcessPixel(0);
    return pixel.g;
}

/// A widget of the adjustment and its controls.
struct Fixture : Panel<YDBrightnessContrastWidget>
{
    using Panel::Panel;

    KVSlider* const brightnessSlider = Child<KVSlider>("m_pBrightnessSlider");
    KVSpinBox* const brightnessSpin = Child<KVSpinBox>("m_pBrightnessSpin");
    KVSlider* const contrastSlider = Child<KVSlider>("m_pContrastSlider");
    KVSpinBox* const contrastSpin = Child<KVSpinBox>("m_pContrastSpin");
};

} // namespace

class TestYDBrightnessContrastWidget : public QObject
{
    Q_OBJECT

private slots:
    void ASpinBoxBeyondItsSliderIsPushedBack();
    void BeyondTheSliderOnlyJobsFollowTheSpinBox();
    void TheNextPreviewFollowsTheSpinBoxBeyondTheSlider();
    void RecordsFromOutsideAreShownAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreShownAndAppliedWithoutHarm();
    void ConversionChangesThePixelsHandedIn();
    void AfterABurstOfChangesTheLastOneIsShown();
    void CancellingUnderLoadLeavesNothingRunning();
};

void TestYDBrightnessContrastWidget::ASpinBoxBeyondItsSliderIsPushedBack()
{
    Fixture f;
    f.contrastSpin->setValue(-110); // the slider's end is pushed back into the spin box
    QCOMPARE(f.contrastSlider->value(), -100);
    QCOMPARE(f.contrastSpin->value(), -100);
}

void TestYDBrightnessContrastWidget::BeyondTheSliderOnlyJobsFollowTheSpinBox()
{
    Fixture f;
    f.brightnessSlider->setValue(100);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.brightnessSpin->setValue(127);
    QCOMPARE(f.brightnessSpin->value(), 127);
    QCOMPARE(f.brightnessSlider->value(), 100);
    QCOMPARE(f.widget.GetValue().brightness, 100);
    QCOMPARE(data.count(), 0);
    const RGBA32iImage image = Converted(f.widget, Ramp(256, 1));
    QCOMPARE(image.Row(0)[10].b, Level(127, 0, 10));
    QVERIFY(Level(127, 0, 10) != Level(100, 0, 10));
}

void TestYDBrightnessContrastWidget::TheNextPreviewFollowsTheSpinBoxBeyondTheSlider()
{
    using Rule = YDIterativeBrightnessContrastTransformation;
    const RGBA32iImage source = Ramp(256, 20);
    const RGBA32iImage atTheSlidersEnd = ByRule(Rule(100, 0), source);
    const RGBA32iImage beyond = ByRule(Rule(127, 0), source);
    QVERIFY(!TestPictures::AreEqual(atTheSlidersEnd, beyond));
    Fixture f;
    f.brightnessSlider->setValue(100);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), atTheSlidersEnd));
    f.brightnessSpin->setValue(127); // starts no job: the slider stands at its end already
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 1);
    f.widget.StartProcessing();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), beyond));
    QCOMPARE(f.widget.GetValue().brightness, 100);
    QCOMPARE(f.brightnessSlider->value(), 100);
}

void TestYDBrightnessContrastWidget::RecordsFromOutsideAreShownAndAppliedWithoutHarm_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("lowest") << Lowest;
    QTest::newRow("highest") << Highest;
    QTest::newRow("just outside") << 128;
}

void TestYDBrightnessContrastWidget::RecordsFromOutsideAreShownAndAppliedWithoutHarm()
{
    QFETCH(int, value);
    Fixture f;
    f.widget.SetValue(Record(value, value));
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(value, value)));
    QVERIFY(f.brightnessSpin->value() >= -127 && f.brightnessSpin->value() <= 127);
    Converted(f.widget, Ramp(20, 20));
    QCOMPARE(Level(value, 0, 100), Level(value < 0 ? -127 : 127, 0, 100));
}

void TestYDBrightnessContrastWidget::ConversionChangesThePixelsHandedIn()
{
    Fixture f(false);
    f.widget.SetValue(Record(20, 0));
    RGBA32iImage image = Ramp(256, 2);
    const RGBA32iImage shared = image;
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QVERIFY(image.SharesPixelsWith(shared));
    QVERIFY(image.Row(0)[10] == YDRGBA32i(30, 20, 30, 245));
}

void TestYDBrightnessContrastWidget::AfterABurstOfChangesTheLastOneIsShown()
{
    Fixture f;
    const RGBA32iImage source = Ramp(3000, 2000);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QRandomGenerator random(11);
    QElapsedTimer elapsed;
    elapsed.start();
    // Changes come faster and slower than jobs are started, run and end.
    for (int change = 0; change < 200; ++change) {
        f.brightnessSlider->setValue(random.bounded(-100, 100));
        f.contrastSlider->setValue(random.bounded(-100, 100));
        if (random.bounded(3) == 0)
            f.widget.FlushPendingChange();
        QTest::qWait(random.bounded(12));
    }
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.brightnessSlider->setValue(f.brightnessSlider->value() == 33 ? 34 : 33);
    f.widget.FlushPendingChange();
    QTRY_VERIFY_WITH_TIMEOUT(!ready.isEmpty(), PatienceMs);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), Converted(f.widget, source)));
}

void TestYDBrightnessContrastWidget::CancellingUnderLoadLeavesNothingRunning()
{
    Fixture f;
    const RGBA32iImage source = Ramp(3000, 2000);
    f.widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
    QRandomGenerator random(12);
    for (int round = 0; round < 60; ++round) {
        f.brightnessSlider->setValue(random.bounded(-100, 100));
        f.widget.FlushPendingChange();
        QTest::qWait(random.bounded(8));
        f.widget.SetCancelProcessing(true);
        QTest::qWait(random.bounded(4));
        f.widget.SetCancelProcessing(false);
    }
    f.widget.SetCancelProcessing(true);
    QTRY_VERIFY_WITH_TIMEOUT(f.widget.WaitForProcessingFinished(false), PatienceMs);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.brightnessSlider->setValue(f.brightnessSlider->value() == 1 ? 2 : 1);
    QTest::qWait(QuietMs);
    QCOMPARE(ready.count(), 0);
}

QTEST_MAIN(TestYDBrightnessContrastWidget)
#include "tst_YDBrightnessContrastWidget.moc"
