#include "TestPictures.h"
#include "YDThresholdWidget.h"
#include "gui/HistogramWidget.h"
#include "gui/YodiCustomSlider.h"
#include "widgets/KVSpinBox.h"

#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <limits>

namespace {

constexpr int PatienceMs = 20000;
constexpr int QuietMs = 150;

using Params = YDThresholdWidget::Params;

Params Record(int level)
{
    Params params;
    params.level = level;
    return params;
}

QByteArray Written(const Params& params)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << params;
    return bytes;
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

struct Fixture
{
    explicit Fixture(bool isDialog = true) : widget(isDialog, nullptr, Qt::WindowFlags()) {}

    template <class T>
    T* Child(const char* name) const
    {
        return widget.findChild<T*>(QString::fromLatin1(name));
    }

    YDThresholdWidget widget;
    KVSpinBox* const spin = Child<KVSpinBox>("m_pThresholdLevel");
    YodiCustomSlider* const slider = Child<YodiCustomSlider>("m_pSlider");
    HistogramWidget* const histogram = Child<HistogramWidget>("m_pHistogramm");
};

} // namespace

class TestYDThresholdWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void TheFormIsAsDesigned();
    void AChangeIsStoredAndAnnouncedOnceInOrder_data();
    void AChangeIsStoredAndAnnouncedOnceInOrder();
    void TheRecordHoldsTheLevelWhenTheFirstIsTold();
    void AnyHandleNumberSetsTheLevel();
    void AHandleBroughtToZeroLeavesTheLevelAtOne();
    void KeysBringTheHandleToZeroAndTheLevelToOne();
    void AHandleMovesOnFromALevelOfZero();
    void SettingARecordMovesTheControlsAndAnnouncesNothing();
    void LevelsBeyondTheControlsAreKept_data();
    void LevelsBeyondTheControlsAreKept();
    void ResetAnnouncesOnceEachTime();
    void TheStreamIsTagAndLevel();
    void AnyLevelIsReadAsItIs_data();
    void AnyLevelIsReadAsItIs();
    void ACutStreamLoadsAsDefaultsWithOneLine();
    void AnotherVersionLoadsAsDefaultsWithOneLine();
    void AReadOnlyStreamLogsTheFailedWrite();
    void TheHistogramIsThatOfTheSource();
    void TheHistogramShowsWhatIsAttached();
    void TheHistogramDoesNotReadWhatIsConverted();
    void ConversionFollowsTheLevel_data();
    void ConversionFollowsTheLevel();
    void ThePreviewEqualsTheConversion();
    void IsDestroyedWhileTheHistogramIsCounted();
};

void TestYDThresholdWidget::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("adjustmentgui-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("tst_YDThresholdWidget"));
}

void TestYDThresholdWidget::TheFormIsAsDesigned()
{
    Fixture f(false);
    QCOMPARE(f.widget.windowTitle(), QStringLiteral("Threshold"));
    QCOMPARE(f.widget.GetWidgetName(), QStringLiteral("Threshold"));
    const auto* const label = f.Child<QLabel>("label");
    QVERIFY(label && f.spin && f.slider && f.histogram);
    QCOMPARE(label->text(), QStringLiteral("Threshold level:"));
    QCOMPARE(label->buddy(), f.spin);
    QCOMPARE(f.spin->minimum(), 1);
    QCOMPARE(f.spin->maximum(), 255);
    QCOMPARE(f.spin->value(), 128);
    QCOMPARE(f.slider->Minimum(), 0);
    QCOMPARE(f.slider->Maximum(), 255);
    QCOMPARE(f.slider->ControlCount(), 1u);
    QCOMPARE(f.slider->Brush(0), QBrush(Qt::black));
    QCOMPARE(f.slider->ControlName(0), QStringLiteral("Threshold level"));
    QCOMPARE(f.slider->LowestValue(0), 0);
    QCOMPARE(f.slider->HighestValue(0), 255);
    QCOMPARE(f.slider->Value(0), 128);
    QCOMPARE(f.histogram->GetChannel(), 0);
    QCOMPARE(f.widget.GetValue().level, 128);
    // Each level of the histogram stands over the handle's place for it.
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

void TestYDThresholdWidget::AChangeIsStoredAndAnnouncedOnceInOrder_data()
{
    QTest::addColumn<bool>("isSlider");
    QTest::addColumn<int>("value");
    QTest::newRow("spin box") << false << 77;
    QTest::newRow("spin box to its minimum") << false << 1;
    QTest::newRow("spin box to its maximum") << false << 255;
    QTest::newRow("slider") << true << 77;
    QTest::newRow("slider to its maximum") << true << 255;
}

void TestYDThresholdWidget::AChangeIsStoredAndAnnouncedOnceInOrder()
{
    QFETCH(bool, isSlider);
    QFETCH(int, value);
    Fixture f;
    QStringList order;
    const auto note = [&order](const char* what) { order.append(QString::fromLatin1(what)); };
    connect(&f.widget, &KVAdjustmentWidget::UserParamsChanged, this, [&] { note("host"); });
    connect(&f.widget, &YDThresholdWidget::ValueChanged, this, [&] { note("value"); });
    connect(&f.widget, &YDAdjustmentWidget::DataChanged, this, [&] { note("data"); });
    if (isSlider)
        f.slider->ChangeValue(0, value);
    else
        f.spin->setValue(value);
    QCOMPARE(order, QStringList({QStringLiteral("host"), QStringLiteral("value"), QStringLiteral("data")}));
    QCOMPARE(f.widget.GetValue().level, value);
    QCOMPARE(f.spin->value(), value);
    QCOMPARE(f.slider->Value(0), value);
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

void TestYDThresholdWidget::SettingARecordMovesTheControlsAndAnnouncesNothing()
{
    Fixture f;
    f.widget.SetImage(Greys(), RGBA32iImage(), QPoint(), QRect());
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    QSignalSpy host(&f.widget, &KVAdjustmentWidget::UserParamsChanged);
    QSignalSpy value(&f.widget, &YDThresholdWidget::ValueChanged);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    f.widget.SetValue(Record(30));
    QCOMPARE(f.widget.GetValue().level, 30);
    QCOMPARE(f.spin->value(), 30);
    QCOMPARE(f.slider->Value(0), 30);
    QTest::qWait(QuietMs);
    QCOMPARE(host.count() + value.count() + data.count(), 0);
    QCOMPARE(ready.count(), 1);
    f.spin->setValue(31); // the slot is connected again
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
    QTest::newRow("least") << std::numeric_limits<int>::min() << 0 << 1;
    QTest::newRow("largest") << std::numeric_limits<int>::max() << 255 << 255;
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

void TestYDThresholdWidget::ResetAnnouncesOnceEachTime()
{
    Fixture f;
    f.widget.SetValue(Record(300));
    QSignalSpy host(&f.widget, &KVAdjustmentWidget::UserParamsChanged);
    QSignalSpy value(&f.widget, &YDThresholdWidget::ValueChanged);
    QSignalSpy data(&f.widget, &YDAdjustmentWidget::DataChanged);
    for (int times = 1; times <= 2; ++times) {
        f.widget.Reset();
        QCOMPARE(f.widget.GetValue().level, 128);
        QCOMPARE(f.spin->value(), 128);
        QCOMPARE(f.slider->Value(0), 128);
        QCOMPARE(host.count(), times);
        QCOMPARE(value.count(), times);
        QCOMPARE(data.count(), times);
    }
}

void TestYDThresholdWidget::TheStreamIsTagAndLevel()
{
    const QByteArray expected = QByteArray("KVThreshold 1.00000") + QByteArray::fromHex("0000001e");
    QCOMPARE(expected.size(), 19 + 4);
    QCOMPARE(Written(Record(30)), expected);
    QDataStream stream(expected);
    Params params;
    stream >> params;
    QCOMPARE(params.level, 30);
}

void TestYDThresholdWidget::AnyLevelIsReadAsItIs_data()
{
    QTest::addColumn<int>("level");
    for (const int level : {0, 300, -5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", level) << level;
}

void TestYDThresholdWidget::AnyLevelIsReadAsItIs()
{
    QFETCH(int, level);
    QDataStream stream(Written(Record(level)));
    Params params;
    QVERIFY(params.Read(stream));
    QCOMPARE(params.level, level);
    Fixture f;
    f.widget.SetValue(params);
    QCOMPARE(f.widget.GetValue().level, level);
}

void TestYDThresholdWidget::ACutStreamLoadsAsDefaultsWithOneLine()
{
    const QByteArray whole = Written(Record(30));
    for (int length = 0; length < whole.size(); ++length) {
        QDataStream stream(whole.left(length));
        Params params = Record(1);
        QTest::ignoreMessage(QtDebugMsg, "[src/YDThresholdWidget:311] Read threshold data error.");
        stream >> params;
        QCOMPARE(params.level, 128);
    }
}

void TestYDThresholdWidget::AnotherVersionLoadsAsDefaultsWithOneLine()
{
    QByteArray bytes = Written(Record(30));
    bytes.replace("1.00000", "1.00001");
    QDataStream stream(bytes);
    Params params = Record(1);
    QVERIFY(!params.Read(stream));
    QCOMPARE(params.level, 1);
    stream.device()->seek(0);
    QTest::ignoreMessage(QtDebugMsg, "[src/YDThresholdWidget:311] Read threshold data error.");
    stream >> params;
    QCOMPARE(params.level, 128);
}

void TestYDThresholdWidget::AReadOnlyStreamLogsTheFailedWrite()
{
    QDataStream stream(QByteArray(100, 'x'));
    QVERIFY(!Params().Write(stream));
    QTest::ignoreMessage(QtDebugMsg, "[src/YDThresholdWidget:298] Write threshold data error.");
    stream << Params();
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

void TestYDThresholdWidget::ThePreviewEqualsTheConversion()
{
    Fixture f;
    const RGBA32iImage source = TestPictures::Noise(700, 400);
    const RGBA32iImage mask = TestPictures::Random(300, 200, 4);
    const QRect bounds(0, 0, 300, 200);
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetValue(Record(90));
    f.widget.SetImage(source, mask, QPoint(-50, 300), bounds);
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PatienceMs);
    RGBA32iImage converted = source.DeepCopy();
    f.widget.ConvertImage(converted, mask, QPoint(-50, 300), bounds);
    QVERIFY(TestPictures::AreEqual(f.widget.AdjustedImage(), converted));
    QVERIFY(!TestPictures::AreEqual(converted, source));
}

void TestYDThresholdWidget::IsDestroyedWhileTheHistogramIsCounted()
{
    const RGBA32iImage source = TestPictures::Noise(2000, 1000);
    for (const bool isDialog : {false, true, false, true}) {
        auto f = std::make_unique<Fixture>(isDialog);
        f->widget.SetImage(source, RGBA32iImage(), QPoint(), QRect());
        QCoreApplication::processEvents(); // begins the count
        f.reset();
    }
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
}

QTEST_MAIN(TestYDThresholdWidget)
#include "tst_YDThresholdWidget.moc"
