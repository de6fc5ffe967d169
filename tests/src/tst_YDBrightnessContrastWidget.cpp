#include "AdjustmentProbe.h"
#include "TestPictures.h"
#include "YDBrightnessContrastWidget.h"
#include "core/KVApplication.h"
#include "image/YDIterativeBrightnessContrastTransformation.h"
#include "widgets/KVSlider.h"
#include "widgets/KVSpinBox.h"

#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int PatienceMs = 20000;
constexpr int QuietMs = 150;

using Params = YDBrightnessContrastWidget::Params;

Params Record(int brightness, int contrast)
{
    Params params;
    params.brightness = brightness;
    params.contrast = contrast;
    return params;
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
}

RGBA32iImage Ramp(int width, int height)
{
    const RGBA32iImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.Row(y)[x] = YDRGBA32i(quint8(x), quint8(y), quint8(x + y), quint8(255 - x));
    return image;
}

RGBA32iImage Converted(YDBrightnessContrastWidget& widget, const RGBA32iImage& source)
{
    RGBA32iImage image = source.DeepCopy();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
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
struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

    YDBrightnessContrastWidget widget;
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
    void initTestCase();

    void TheFormIsAsDesigned();
    void SlidersAndSpinBoxesFollowEachOther();
    void AChangeIsStoredAndAnnouncedOnceInOrder_data();
    void AChangeIsStoredAndAnnouncedOnceInOrder();
    void BeyondTheSliderOnlyJobsFollowTheSpinBox();
    void TheNextPreviewFollowsTheSpinBoxBeyondTheSlider();
    void SettingARecordMovesTheControlsAndAnnouncesNothing();
    void ResetAnnouncesOnlyRealChanges();
    void TheStreamIsTagAndTwoNumbers();
    void AnotherVersionLoadsAsDefaultsWithOneLine();
    void ACutStreamLoadsAsDefaultsWithOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void RecordsFromOutsideAreShownAndAppliedWithoutHarm_data();
    void RecordsFromOutsideAreShownAndAppliedWithoutHarm();
    void NeutralSettingsChangeNoPixel();
    void ConversionChangesThePixelsHandedIn();
    void ThePreviewEqualsTheConversion();
    void AfterABurstOfChangesTheLastOneIsShown();
    void CancellingUnderLoadLeavesNothingRunning();
};

void TestYDBrightnessContrastWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDBrightnessContrastWidget"));
}

void TestYDBrightnessContrastWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Brightness and Contrast"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Brightness and Contrast"));
    QCOMPARE(f.widget.size(), QSize(208, 103));
    QCOMPARE(f.widget.minimumSize(), QSize(0, 0));
    QCOMPARE(f.widget.maximumSize(), QSize(16777215, 16777215));
    const auto* const grid = f.Child<QGridLayout>("gridLayout");
    QVERIFY(grid);
    QVERIFY(f.Child<QGridLayout>("gridLayout_2"));
    struct Row
    {
        const char* label;
        const char* text;
        KVSlider* slider;
        KVSpinBox* spin;
    };
    int row = 0;
    for (const Row& each : {Row{"labelBrightness", "Brightness:", f.brightnessSlider, f.brightnessSpin},
                            Row{"labelContrast", "Contrast:", f.contrastSlider, f.contrastSpin}}) {
        const auto* const label = f.Child<QLabel>(each.label);
        QVERIFY(label && each.slider && each.spin);
        QCOMPARE(grid->itemAtPosition(row, 0)->widget(), label);
        QCOMPARE(grid->itemAtPosition(row, 1)->widget(), each.slider);
        QCOMPARE(grid->itemAtPosition(row, 2)->widget(), each.spin);
        QCOMPARE(label->text(), QString::fromLatin1(each.text));
        QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        QCOMPARE(each.slider->orientation(), Qt::Horizontal);
        QCOMPARE(each.slider->minimum(), -100);
        QCOMPARE(each.slider->maximum(), 100);
        QCOMPARE(each.slider->value(), 0);
        QCOMPARE(each.slider->sliderPosition(), 0);
        QVERIFY(each.slider->toolTip().isEmpty());
        QCOMPARE(each.spin->minimum(), -127);
        QCOMPARE(each.spin->maximum(), 127);
        QCOMPARE(each.spin->singleStep(), 1);
        QCOMPARE(each.spin->value(), 0);
        QVERIFY(each.spin->toolTip().isEmpty());
        ++row;
    }
    const QLayoutItem* const spacer = grid->itemAtPosition(2, 0);
    QVERIFY(spacer && spacer == grid->itemAtPosition(2, 2));
    QCOMPARE(spacer->sizeHint(), QSize(188, 24));
    const auto policy = const_cast<QLayoutItem*>(spacer)->spacerItem()->sizePolicy();
    QCOMPARE(policy, QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding));
}

void TestYDBrightnessContrastWidget::SlidersAndSpinBoxesFollowEachOther()
{
    Fixture f;
    f.brightnessSlider->setValue(40);
    QCOMPARE(f.brightnessSpin->value(), 40);
    f.contrastSpin->setValue(-30);
    QCOMPARE(f.contrastSlider->value(), -30);
    f.contrastSpin->setValue(-110); // the slider's end is pushed back into the spin box
    QCOMPARE(f.contrastSlider->value(), -100);
    QCOMPARE(f.contrastSpin->value(), -100);
}

void TestYDBrightnessContrastWidget::AChangeIsStoredAndAnnouncedOnceInOrder_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("contrast");
    QTest::newRow("brightness slider") << "m_pBrightnessSlider" << 25 << 0;
    QTest::newRow("brightness spin box") << "m_pBrightnessSpin" << 25 << 0;
    QTest::newRow("contrast slider") << "m_pContrastSlider" << 0 << 25;
    QTest::newRow("contrast spin box") << "m_pContrastSpin" << 0 << 25;
}

void TestYDBrightnessContrastWidget::AChangeIsStoredAndAnnouncedOnceInOrder()
{
    QFETCH(QString, control);
    QFETCH(int, brightness);
    QFETCH(int, contrast);
    Fixture f;
    QStringList order;
    const auto note = [&order](const char* what) { order.append(QString::fromLatin1(what)); };
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this, [&] { note("host"); });
    connect(&f.widget, &YDBrightnessContrastWidget::ValueChanged, this, [&] { note("value"); });
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, [&] { note("data"); });
    f.widget.findChild<QWidget*>(control)->setProperty("value", 25);
    QCOMPARE(order, QStringList({QStringLiteral("host"), QStringLiteral("value"), QStringLiteral("data")}));
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(brightness, contrast)));
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
    const RGBA32iImage atTheSlidersEnd = AdjustmentProbe::ByRule(Rule(100, 0), source);
    const RGBA32iImage beyond = AdjustmentProbe::ByRule(Rule(127, 0), source);
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

void TestYDBrightnessContrastWidget::SettingARecordMovesTheControlsAndAnnouncesNothing()
{
    Fixture f;
    f.widget.SetImage(Ramp(50, 50), RGBA32iImage(), QPoint(), QRect());
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QSignalSpy host(&f.widget, &KVAdjustmentWidget::UserParamsChanged);
    QSignalSpy value(&f.widget, &YDBrightnessContrastWidget::ValueChanged);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.widget.SetValue(Record(30, -40));
    QCOMPARE(f.brightnessSpin->value(), 30);
    QCOMPARE(f.brightnessSlider->value(), 30);
    QCOMPARE(f.contrastSpin->value(), -40);
    QCOMPARE(f.contrastSlider->value(), -40);
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Record(30, -40)));
    QTest::qWait(QuietMs);
    QCOMPARE(host.count() + value.count() + data.count(), 0);
    QCOMPARE(ready.count(), 1);
    f.brightnessSlider->setValue(31); // the slots are connected again
    QCOMPARE(data.count(), 1);
}

void TestYDBrightnessContrastWidget::ResetAnnouncesOnlyRealChanges()
{
    Fixture f;
    AdjustmentProbe::Announcements<YDBrightnessContrastWidget> announcements(f.widget);
    f.widget.Reset();
    QCOMPARE(announcements.Take(), QString());
    f.brightnessSlider->setValue(5);
    announcements.Take();
    f.widget.Reset();
    QCOMPARE(announcements.Take(), AdjustmentProbe::OneChange());
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), Params()));
    QCOMPARE(f.brightnessSpin->value(), 0);
    QCOMPARE(f.brightnessSlider->value(), 0);
}

void TestYDBrightnessContrastWidget::TheStreamIsTagAndTwoNumbers()
{
    const QByteArray expected = QByteArray("KVBrightnessContrast 1.00000") + QByteArray::fromHex("0000001e") +
                                QByteArray::fromHex("fffffff6");
    QCOMPARE(Written(Record(30, -10)), expected);
    QDataStream stream(expected);
    Params params;
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Record(30, -10)));
}

void TestYDBrightnessContrastWidget::AnotherVersionLoadsAsDefaultsWithOneLine()
{
    QByteArray bytes = Written(Record(30, -10));
    bytes.replace("1.00000", "1.00001");
    QDataStream stream(bytes);
    Params params = Record(1, 2);
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral("^\\[src/YDBrightnessContrastWidget:[0-9]+\\] "
                                                           "Read brightness and contrast data error\\.$")));
    stream >> params;
    QVERIFY(YDRecord::Equal(params, Params()));
}

void TestYDBrightnessContrastWidget::ACutStreamLoadsAsDefaultsWithOneLine()
{
    const QByteArray whole = Written(Record(30, -10));
    for (int length = 0; length < whole.size(); ++length) {
        QDataStream stream(whole.left(length));
        Params params = Record(1, 2);
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(QStringLiteral("Read brightness and contrast data error\\.$")));
        stream >> params;
        QVERIFY(YDRecord::Equal(params, Params()));
    }
}

void TestYDBrightnessContrastWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral("^\\[src/YDBrightnessContrastWidget:[0-9]+\\] "
                                                           "Write brightness and contrast data error\\.$")));
    stream << Params();
}

void TestYDBrightnessContrastWidget::RecordsFromOutsideAreShownAndAppliedWithoutHarm_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("lowest") << std::numeric_limits<int>::min();
    QTest::newRow("highest") << std::numeric_limits<int>::max();
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

void TestYDBrightnessContrastWidget::NeutralSettingsChangeNoPixel()
{
    Fixture f(false);
    const RGBA32iImage source = Ramp(256, 256);
    QVERIFY(TestPictures::AreEqual(Converted(f.widget, source), source));
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

void TestYDBrightnessContrastWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = Ramp(1000, 700);
    const RGBA32iImage mask = Ramp(300, 200);
    const QRect bounds(0, 0, 300, 200);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetValue(Record(17, 40));
    f.widget.SetImage(source, mask, QPoint(-50, 600), bounds);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 600), bounds);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
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
