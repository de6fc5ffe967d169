#include "PanelKit.h"
#include "TestPictures.h"
#include "YDThresholdWidget.h"
#include "gui/HistogramWidget.h"
#include "gui/YodiCustomSlider.h"
#include "widgets/KVSpinBox.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace {

using namespace PanelKit;

using Params = YDThresholdWidget::Params;

Params Record(int level)
{
    Params params;
    params.level = level;
    return params;
}

/// Every grey, one column each.
RGBA32iImage Greys()
{
    const RGBA32iImage image(256, 3);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 256; ++x)
            image.Row(y)[x] = YDRGBA32i(quint8(x), quint8(x), quint8(x), quint8(255 - x));
    return image;
}

/// The number of white columns that the panel makes of Greys().
int WhiteGreys(YDThresholdWidget& widget)
{
    RGBA32iImage image = Greys();
    widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    return int(std::count_if(image.Row(1), image.Row(1) + 256,
                             [](const YDRGBA32i& pixel) { return pixel.r == 255; }));
}

struct Fixture : Panel<YDThresholdWidget>
{
    using Panel::Panel;

    KVSpinBox* const spin = Child<KVSpinBox>("m_pThresholdLevel");
    YodiCustomSlider* const slider = Child<YodiCustomSlider>("m_pSlider");
    HistogramWidget* const histogram = Child<HistogramWidget>("m_pHistogramm");
};

} // namespace

class TestYDThresholdWidget : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void TheHandleStandsUnderItsLevel();
    void TheRecordHoldsTheLevelWhenTheFirstIsTold();
    void AnyHandleNumberSetsTheLevel();
    void AHandleBroughtToZeroLeavesTheLevelAtOne();
    void KeysBringTheHandleToZeroAndTheLevelToOne();
    void AHandleMovesOnFromALevelOfZero();
    void LevelsBeyondTheControlsAreKept_data();
    void LevelsBeyondTheControlsAreKept();
    void TheHistogramIsThatOfTheSource();
    void TheHistogramShowsWhatIsAttached();
    void TheHistogramDoesNotReadWhatIsConverted();
    void ConversionFollowsTheLevel_data();
    void ConversionFollowsTheLevel();
};

void TestYDThresholdWidget::TheHandleStandsUnderItsLevel()
{
    Fixture f(false);
    QCOMPARE(f.histogram->GetChannel(), 0);
    f.widget.resize(f.widget.sizeHint());
    f.widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&f.widget));
    const double columnWidth = f.histogram->width() / 256.0;
    for (const int level : {0, 100, 255}) {
        const double inHistogram = f.histogram->mapTo(&f.widget, QPoint()).x() + (level + 0.5) * columnWidth;
        const double onSlider = f.slider->mapTo(&f.widget, QPoint()).x() + f.slider->PositionOf(level);
        QVERIFY(qAbs(inHistogram - onSlider) < 0.01);
    }
}

void TestYDThresholdWidget::TheRecordHoldsTheLevelWhenTheFirstIsTold()
{
    Fixture f;
    QVector<int> told;
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this,
            [&] { told.append(f.widget.GetValue().level); });
    f.spin->setValue(77);
    f.slider->ChangeValue(0, 200);
    f.slider->ChangeValue(0, 0);
    f.widget.Reset();
    QCOMPARE(told, QVector<int>({77, 200, 1, 128}));
}

void TestYDThresholdWidget::AnyHandleNumberSetsTheLevel()
{
    Fixture f;
    emit f.slider->ValueChanged(5, 44);
    QCOMPARE(f.widget.GetValue().level, 44);
    QCOMPARE(f.slider->Value(0), 44);
}

void TestYDThresholdWidget::AHandleBroughtToZeroLeavesTheLevelAtOne()
{
    Fixture f;
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    for (const int handle : {1, 0}) { // the second time the spin box is at 1 and says nothing
        f.slider->ChangeValue(0, 0);
        QCOMPARE(f.widget.GetValue().level, 1);
        QCOMPARE(f.spin->value(), 1);
        QCOMPARE(f.slider->Value(0), handle);
        QCOMPARE(data.count(), 1);
    }
    f.slider->ChangeValue(0, 2);
    QCOMPARE(f.widget.GetValue().level, 2);
    QCOMPARE(data.count(), 2);
}

void TestYDThresholdWidget::KeysBringTheHandleToZeroAndTheLevelToOne()
{
    Fixture f;
    f.widget.SetValue(Record(3));
    for (const int handle : {2, 1, 0, 0}) {
        QTest::keyClick(f.slider, Qt::Key_Left);
        QCOMPARE(f.slider->Value(0), handle);
        QCOMPARE(f.spin->value(), std::max(handle, 1));
        QCOMPARE(f.widget.GetValue().level, std::max(handle, 1));
    }
    for (const int handle : {1, 2}) {
        QTest::keyClick(f.slider, Qt::Key_Right);
        QCOMPARE(f.slider->Value(0), handle);
        QCOMPARE(f.widget.GetValue().level, handle);
    }
}

/// The spin box shows that level as 1, so that a handle at 1 is no change to it.
void TestYDThresholdWidget::AHandleMovesOnFromALevelOfZero()
{
    Fixture f;
    f.widget.SetValue(Record(0));
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    QTest::keyClick(f.slider, Qt::Key_Right);
    QCOMPARE(f.slider->Value(0), 1);
    QCOMPARE(f.spin->value(), 1);
    QCOMPARE(f.widget.GetValue().level, 0);
    QCOMPARE(data.count(), 0);
    QTest::keyClick(f.slider, Qt::Key_Right);
    QCOMPARE(f.widget.GetValue().level, 2);
    QCOMPARE(data.count(), 1);
}

void TestYDThresholdWidget::LevelsBeyondTheControlsAreKept_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("handle");
    QTest::addColumn<int>("spin");
    QTest::newRow("zero") << 0 << 0 << 1;
    QTest::newRow("negative") << -1 << 0 << 1;
    QTest::newRow("just above") << 256 << 255 << 255;
    QTest::newRow("far above") << 300 << 255 << 255;
    QTest::newRow("least") << Lowest << 0 << 1;
    QTest::newRow("largest") << Highest << 255 << 255;
}

void TestYDThresholdWidget::LevelsBeyondTheControlsAreKept()
{
    QFETCH(int, level);
    QFETCH(int, handle);
    QFETCH(int, spin);
    Fixture f;
    f.widget.SetValue(Record(level));
    QCOMPARE(f.widget.GetValue().level, level);
    QCOMPARE(f.slider->Value(0), handle);
    QCOMPARE(f.spin->value(), spin);
    QCOMPARE(WhiteGreys(f.widget), level > 255 ? 0 : 256);
    f.widget.SetValue(Record(spin)); // the controls follow from there
    QCOMPARE(f.slider->Value(0), spin);
    QCOMPARE(f.spin->value(), spin);
}

void TestYDThresholdWidget::TheHistogramIsThatOfTheSource()
{
    for (const bool isDialog : {false, true}) {
        Fixture f(isDialog);
        QSignalSpy complete(f.histogram, &HistogramWidget::HistogrammComplete);
        f.widget.SetImage(Greys(), RGBA32iImage(), QPoint(), QRect());
        QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 1, PatienceMs);
        QCOMPARE(f.histogram->GetPixelsCount(), qint64(768));
        QCOMPARE(f.histogram->GetCount(3, 200), qint64(3));
        f.widget.SetImage(TestPictures::Grey(4, 4, 9), RGBA32iImage(), QPoint(), QRect());
        QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 2, PatienceMs);
        QCOMPARE(f.histogram->GetCount(3, 9), qint64(16));
        f.widget.ClearData();
        QCOMPARE(f.histogram->GetPixelsCount(), qint64(0));
    }
}

void TestYDThresholdWidget::TheHistogramShowsWhatIsAttached()
{
    Fixture f;
    QSignalSpy complete(f.histogram, &HistogramWidget::HistogrammComplete);
    YDSharedImage<RGBA32iImage> picture(TestPictures::Grey(4, 4, 9));
    f.widget.AttachRGB32iImage(&picture);
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 1, PatienceMs);
    QCOMPARE(f.histogram->GetCount(3, 9), qint64(16));
    picture.SetImage(TestPictures::Grey(4, 4, 10));
    f.widget.UpdateHistogramm();
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 2, PatienceMs);
    QCOMPARE(f.histogram->GetCount(3, 10), qint64(16));
    const YDSharedImage<QImage> image(ImageToQImage(TestPictures::Grey(4, 4, 11)));
    f.widget.AttachQImage(&image);
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 3, PatienceMs);
    QCOMPARE(f.histogram->GetCount(3, 11), qint64(16));
}

/// A panel gets a picture and changes it at once; the count begins afterwards.
void TestYDThresholdWidget::TheHistogramDoesNotReadWhatIsConverted()
{
    Fixture f(false);
    QSignalSpy complete(f.histogram, &HistogramWidget::HistogrammComplete);
    RGBA32iImage image = Greys();
    f.widget.SetImage(image, RGBA32iImage(), QPoint(), QRect());
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    QTRY_COMPARE_WITH_TIMEOUT(complete.count(), 1, PatienceMs);
    QCOMPARE(f.histogram->GetCount(3, 0), qint64(384));
    QCOMPARE(f.histogram->GetCount(3, 255), qint64(384));
}

void TestYDThresholdWidget::ConversionFollowsTheLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("white"); // of 256 greys
    QTest::newRow("1") << 1 << 255;
    QTest::newRow("128") << 128 << 128;
    QTest::newRow("255") << 255 << 1;
    QTest::newRow("0") << 0 << 256;
    QTest::newRow("256") << 256 << 0;
}

void TestYDThresholdWidget::ConversionFollowsTheLevel()
{
    QFETCH(int, level);
    QFETCH(int, white);
    Fixture f(false);
    f.widget.SetValue(Record(level));
    QCOMPARE(WhiteGreys(f.widget), white);
    RGBA32iImage image = Greys();
    f.widget.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    for (int x = 0; x < 256; ++x) {
        const quint8 grey = x >= level ? 255 : 0;
        QCOMPARE(QRgb(image.Row(2)[x]), QRgb(YDRGBA32i(grey, grey, grey, quint8(255 - x))));
    }
}

QTEST_MAIN(TestYDThresholdWidget)
#include "tst_YDThresholdWidget.moc"
